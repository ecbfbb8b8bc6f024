/* Scanner of the .bsc language. A token is at most 8191 characters long: the generator's own limit of an array
   for the token's text, with its own message. Comments and white space are taken a character at a time, so that
   the limit does not touch them. */
%option prefix="dft_yy"
%option noyywrap nounput noinput never-interactive 8bit
%array
%x LINE_COMMENT BLOCK_COMMENT

%top{
// The prefix does not reach this one name of an array scanner: without another name three scanners would share it.
#define yytext_ptr dft_yytext_ptr
}
%{
#undef yytext_ptr
static char *&yytext_ptr = dft_yytext_ptr;
#include "description/syntax_tree.hh"
#include "description/tables.hh"
#include "support/text.hh"

#include "dft_parser.hh"

#define yylval dft_yylval

static int token(int type, NODE_KIND leaf = NO_NODE) {
    yylval = {keep_text(yytext), type, yylineno, nullptr};
    if (leaf != NO_NODE)
        yylval.ast = make_leaf(leaf, yylval.text);
    return type;
}

static int word() {
    int type = dft_keyword_lookup(yytext);
    return type < 0 ? token(DFT_IDENT, IDENT_NODE) : token(type);
}
%}

PATH    ("/"|"./"|"../"|"./../")"/"?
NAME    -?_?\\?{PATH}?%?"*"?[01]*[A-Za-z][A-Za-z0-9_\-*.\[\]/]*

%%

[ \t\f\r]           ;
\n                  ++yylineno;
"//"                BEGIN(LINE_COMMENT);
"/*"                BEGIN(BLOCK_COMMENT);
{NAME}              {
                        /* A name may begin like a path; what opens a comment opens a comment all the same. */
                        if (yytext[0] == '/' && (yytext[1] == '/' || yytext[1] == '*')) {
                            BEGIN(yytext[1] == '/' ? LINE_COMMENT : BLOCK_COMMENT);
                            yyless(2);
                        } else {
                            return word();
                        }
                    }
[01]+               return token(DFT_PATTERN, PATTERN_NODE);
[0-9]+              return token(DFT_INTEGER, INTEGER_NODE);
[{}()=;,]           return token(yytext[0]);
.                   bad_character(DFT_FILE, yylineno, yytext[0]);

<LINE_COMMENT>{
[^\n]               ;
\n                  { ++yylineno; BEGIN(INITIAL); }
<<EOF>>             { BEGIN(INITIAL); yyterminate(); }
}

<BLOCK_COMMENT>{
"*/"                BEGIN(INITIAL);
"/*"                missing_comment_end(DFT_FILE, yylineno);
\n                  ++yylineno;
.                   ;
<<EOF>>             missing_comment_end(DFT_FILE, yylineno);
}
