/* Scanner of the pin file. A token is at most 8191 characters long: the generator's own limit of an array for
   the token's text, with its own message. Comments and white space are taken a character at a time, so that the
   limit does not touch them. */
%option prefix="pin_yy"
%option noyywrap nounput noinput never-interactive 8bit
%array
%x LINE_COMMENT BLOCK_COMMENT

%top{
// The prefix does not reach this one name of an array scanner: without another name three scanners would share it.
#define yytext_ptr pin_yytext_ptr
}
%{
#undef yytext_ptr
static char *&yytext_ptr = pin_yytext_ptr;
#include "description/syntax_tree.hh"
#include "description/tables.hh"
#include "support/text.hh"

#include "pin_parser.hh"

static int token(int type) {
    pin_yylval = {keep_text(yytext), type, yylineno, nullptr};
    return type;
}

static int word() {
    int type = pin_keyword_lookup(yytext);
    return token(type < 0 ? PIN_IDENT : type);
}
%}

NAME    -?_?\\?%?_?[A-Za-z][A-Za-z0-9_\-.\[\]?{}]*

%%

[ \t\f\r]       ;
\n              ++yylineno;
"//"            BEGIN(LINE_COMMENT);
"/*"            BEGIN(BLOCK_COMMENT);
{NAME}          return word();
[0-9]+          return token(PIN_INTEGER);
[{}()*;:,]      return token(yytext[0]);
.               bad_character(PIN_FILE, yylineno, yytext[0]);

<LINE_COMMENT>{
[^\n]           ;
\n              { ++yylineno; BEGIN(INITIAL); }
<<EOF>>         { BEGIN(INITIAL); yyterminate(); }
}

<BLOCK_COMMENT>{
"*/"            BEGIN(INITIAL);
"/*"            missing_comment_end(PIN_FILE, yylineno);
\n              ++yylineno;
.               ;
<<EOF>>         missing_comment_end(PIN_FILE, yylineno);
}
