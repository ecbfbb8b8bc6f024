PATH    ("/"|"./"|"../"|"./../")"/"?
NAME    -?_?\\?{PATH}?%?"*"?[01]*[A-Za-z][A-Za-z0-9_\-*.\[\]/]*
%%
{NAME}              {
                        /* A name may begin like a path; what opens a comment opens a comment all the same. */
                        if (yytext[0] == '/' && (yytext[1] == '/' || yytext[1] == '*')) {
                            BEGIN(yytext[1] == '/' ? LINE_COMMENT : BLOCK_COMMENT);
                            yyless(2);
                        } else {
                            return word(BSC_IDENT, IDENT_NODE);
                        }
                    }
[01]+               return token(BSC_PATTERN, PATTERN_NODE);
[0-9]+              return token(BSC_INTEGER, INTEGER_NODE);
[{}()=;,]           return token(yytext[0]);
