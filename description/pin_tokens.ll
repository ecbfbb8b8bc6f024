NAME    -?_?\\?%?_?[A-Za-z][A-Za-z0-9_\-.\[\]?{}]*
%%
{NAME}              return word(PIN_IDENT, NO_NODE);
[0-9]+              return token(PIN_INTEGER);
[{}()*;:,]          return token(yytext[0]);
