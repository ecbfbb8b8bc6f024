/* Scanner of the .dft language. What is skipped is taken in bounded pieces, so that the limit of a token's length does
   not touch it. */
%option prefix="scan_yy"
%option reentrant extra-type="SCANNER *"
%option noyywrap nounput noinput never-interactive 8bit yylineno noyyrealloc nodefault
%x STRING ESCAPED LINE_COMMENT BLOCK_COMMENT

%top{
#include "dftlang/grammar.hh"
#include "dftlang/messages.hh"
#include "dftlang/scanner.hh"
#include "support/console.hh"
#include "support/text.hh"

#include <algorithm>
#include <string_view>

// One token and the character behind it; what does not fit is too large.
#define YY_BUF_SIZE (longest_token + 2)
// A file that cannot be read further ends there.
#define YY_INPUT(buffer, count, most) count = std::fread(buffer, 1, most, yyin)
#define YY_FATAL_ERROR(reason) error_handler(nullptr, 0, MESSAGE_NO_MEMORY)
}
%{
[[noreturn]] static void too_large() {
    error_fail("token too large, exceeds YYLMAX\n");
}

static int give(SCANNER *scanner, int type, const char *text) {
    scanner->value.text = scanner->value.shown = text;
    return type;
}

static int copied(SCANNER *scanner, int type, std::string_view text) {
    if (text.size() > longest_token)
        too_large();
    return give(scanner, type, keep_copy(text));
}

static int mark(SCANNER *scanner, int type, const char *shown) {
    scanner->value.text = nullptr;
    scanner->value.shown = shown;
    return type;
}

/// A pattern without its quotes and white space.
static int pattern(SCANNER *scanner, std::string_view quoted) {
    if (quoted.size() > longest_token)
        too_large();
    std::string text;
    for (char c : quoted) {
        if (std::string_view("01SXZ").find(c) != std::string_view::npos)
            text += c;
    }
    return copied(scanner, TOKEN_PATTERN, text);
}

static void add(SCANNER *scanner, std::string_view text) {
    scanner->string += text;
    if (scanner->string.size() > longest_token)
        too_large();
}

/// Token of %WORD_<n>, by its name in the grammar table.
static int numbered_word(std::string_view text) {
    return keyword_lookup(std::string(text.substr(0, text.rfind('_') + 1)) + '#');
}

/// Drops the leading blanks and one blank at the end. A NUL behind a '\' ends the text.
static std::string_view sl_ignore_space(std::string_view text) {
    text = text.substr(0, text.find('\0'));
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    if (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}

/// Characters of a word that are the word; in front of a parenthesis it is cut, unless it has a '\'.
static size_t word_length(std::string_view run) {
    if (run.find('\\') != std::string_view::npos)
        return run.size();
    return std::min(run.find(run.find('(') != std::string_view::npos ? '(' : ')'), run.size());
}

[[noreturn]] static void bad_string(const SCANNER *scanner, int line) {
    error_handler(scanner->file_name, line, MESSAGE_BAD_STRING);
    end_run();
}
%}

NUMBER    [0-9]+
NUMBERED  SCAN_CLOCK|DATA|SCAN_SELECT|BIST_CLOCK|BIST_SELECT|FOLD_SCAN_IN|FOLD_SCAN_OUT
WORD      [A-Za-z_#$%&@][A-Za-z0-9_!#$%&()*+\-./:<>@\[\\\]^|]*

%%

[ \t\f\n]{1,64}         ;
"//"                    BEGIN(LINE_COMMENT);
"/*"                    { yyextra->comment_line = yylineno; BEGIN(BLOCK_COMMENT); }
\"                      { yyextra->string.clear(); BEGIN(STRING); }

-?{NUMBER}              return copied(yyextra, TOKEN_INTEGER, yytext);
-?[0-9]*"."{NUMBER}([Ee][+-]?{NUMBER})?  return copied(yyextra, TOKEN_REAL, yytext);
{NUMBER}"%"             return copied(yyextra, TOKEN_PERCENT, yytext);
"'"[01SXZ\t\f\n]+"'"    return pattern(yyextra, yytext);
"\\"[^ \t\f\n]*         return copied(yyextra, TOKEN_NAME, {yytext, static_cast<size_t>(yyleng)});

"%"{NUMBERED}_{NUMBER}  return copied(yyextra, numbered_word(yytext), yytext);
{WORD}                  {
                            /* Keywords are few and stand everywhere: their texts are shared. The table's own
                               %WORD_# is none of them. */
                            int keyword = yytext[yyleng - 1] == '#' ? -1 : keyword_lookup(yytext);
                            if (keyword >= 0)
                                return give(yyextra, keyword, keep_text(yytext));
                            if (static_cast<size_t>(yyleng) > longest_token)
                                too_large();
                            yyless(static_cast<int>(word_length(yytext)));
                            return copied(yyextra, TOKEN_NAME, yytext);
                        }
"=>"                    return mark(yyextra, TOKEN_ARROW, yytext);
[{}()\[\],;:=~!.]       return mark(yyextra, yytext[0], yytext);
.                       ;

<STRING>{
\"\"                    add(yyextra, "\"");
\"                      {
                            BEGIN(INITIAL);
                            /* Lines behind a mode's name are counted from one more. */
                            if (yyextra->value.type == keyword_lookup("%ATPG_MODE"))
                                yylineno++;
                            return copied(yyextra, TOKEN_STRING, sl_ignore_space(yyextra->string));
                        }
\\                      { add(yyextra, yytext); BEGIN(ESCAPED); }
[^"\\\n\0]+             add(yyextra, yytext);
\n                      bad_string(yyextra, yylineno - 1);
\0                      |
<<EOF>>                 bad_string(yyextra, yylineno);
}

<ESCAPED>{
[^ \n\0]+               add(yyextra, yytext);
[ \n\0]                 { add(yyextra, {yytext, 1}); BEGIN(STRING); }
<<EOF>>                 bad_string(yyextra, yylineno);
}

<LINE_COMMENT>{
[^\n]{1,64}             ;
\n                      BEGIN(INITIAL);
<<EOF>>                 {
                            if (!yyextra->is_quiet && yyextra->value.type != keyword_lookup("%SCAN_CLOCK"))
                                error_printf("Bad string is encountered at line %d.\n", yylineno);
                            yyterminate();
                        }
}

<BLOCK_COMMENT>{
"*/"                    BEGIN(INITIAL);
[^*]{1,64}              ;
"*"                     ;
<<EOF>>                 {
                            error_handler(yyextra->file_name, yyextra->comment_line, MESSAGE_BAD_COMMENT);
                            yyterminate();
                        }
}

%%

void *scan_yyrealloc(void *, yy_size_t, yyscan_t) {
    too_large();
}

void scan_start(SCANNER &scanner, std::FILE *file) {
    scan_yylex_init_extra(&scanner, &scanner.state);
    scan_yyset_in(file, scanner.state);
}

void scan_next(SCANNER &scanner) {
    scanner.previous_line = scanner.line;
    scanner.value.type = scan_yylex(scanner.state);
    if (scanner.value.type == TOKEN_END)
        mark(&scanner, TOKEN_END, "");
    scanner.line = scan_yyget_lineno(scanner.state);
}

void scan_end(SCANNER &scanner) {
    scan_yylex_destroy(scanner.state);
}
