/* Scanner of the .lib language. A token is at most 8191 characters long: the generator's own limit of an array
   for the token's text, with its own message. Comments and white space are taken a character at a time, so that
   the limit does not touch them. */
%option prefix="lib_yy"
%option noyywrap nounput noinput never-interactive 8bit
%array
%x LINE_COMMENT BLOCK_COMMENT

%top{
// The prefix does not reach this one name of an array scanner: without another name three scanners would share it.
#define yytext_ptr lib_yytext_ptr
}
%{
#undef yytext_ptr
static char *&yytext_ptr = lib_yytext_ptr;
#include "description/syntax_tree.hh"
#include "description/tables.hh"
#include "support/text.hh"

#include "lib_parser.hh"

#define yylval lib_yylval

static int token(int type) {
    yylval = {keep_text(yytext), type, yylineno, nullptr};
    if (type == LIB_IDENT || type == LIB_INTEGER)
        yylval.ast = make_leaf(type == LIB_IDENT ? IDENT_NODE : INTEGER_NODE, yylval.text);
    return type;
}

static int word() {
    int type = lib_keyword_lookup(yytext);
    return token(type < 0 ? LIB_IDENT : type);
}

static constexpr int EXTRA_LENGTH = sizeof "%EXTRA_" - 1;
%}

NAME    -?_?\\?%?("*"_?)?[A-Za-z][A-Za-z0-9_\-*\[\]?]*

%%

[ \t\f\r]                   ;
\n                          ++yylineno;
"//"                        BEGIN(LINE_COMMENT);
"/*"                        BEGIN(BLOCK_COMMENT);
"%EXTRA_"[A-Za-z0-9_\-*\[\]?]*  {
                                /* The number of an extra pin may follow without a blank: it is a token of its own. */
                                yyless(EXTRA_LENGTH);
                                return word();
                            }
{NAME}                      return word();
[0-9]+                      return token(LIB_INTEGER);
[,;{}]                      return token(yytext[0]);
.                           bad_character(LIB_FILE, yylineno, yytext[0]);

<LINE_COMMENT>{
[^\n]                       ;
\n                          { ++yylineno; BEGIN(INITIAL); }
<<EOF>>                     { BEGIN(INITIAL); yyterminate(); }
}

<BLOCK_COMMENT>{
"*/"                        BEGIN(INITIAL);
"/*"                        missing_comment_end(LIB_FILE, yylineno);
\n                          ++yylineno;
.                           ;
<<EOF>>                     missing_comment_end(LIB_FILE, yylineno);
}
