NAME    -?_?\\?%?("*"_?)?[A-Za-z][A-Za-z0-9_\-*\[\]?]*
%%
"%EXTRA_"[A-Za-z0-9_\-*\[\]?]*  {
                        /* The number of an extra pin may follow without a blank: it is a token of its own. */
                        yyless(sizeof "%EXTRA_" - 1);
                        return word(LIB_IDENT, IDENT_NODE);
                    }
{NAME}              return word(LIB_IDENT, IDENT_NODE);
[0-9]+              return token(LIB_INTEGER, INTEGER_NODE);
[,;{}]              return token(yytext[0]);
