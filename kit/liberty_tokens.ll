/* The statements of a Liberty file. What is passed over goes by in runs as long as a line, which are not looked at
   twice: no rule here has to give characters back that it has tried (flex's "backing up"). */
%option prefix="liberty_yy" reentrant bison-bridge noyywrap nounput noinput never-interactive 8bit full
%option noyyrealloc nodefault
%option extra-type="LIBERTY_READING *"
%x HEAD VALUE WORDS TAIL SKIP_GROUP SKIP_STRING COMMENT

%top{
#include "kit/liberty_reading.hh"

#define YY_BUF_SIZE (1 << 17)
#define YY_READ_BUF_SIZE (1 << 16)
}
%{
#include "liberty_parser.hh"

#include <cstdlib>

#define YYSTYPE LIBERTY_STATEMENT
#define YY_INPUT(buffer, result, size) result = bytes_read(*yyextra->sources.back().bytes, buffer, size)
#define YY_FATAL_ERROR(reason) liberty_fail(*yyget_extra(yyscanner), reason)

static std::string_view text_of(const char *text, size_t size) {
    return {text, size};
}
#define TEXT text_of(yytext, static_cast<size_t>(yyleng))
#define LINE yyextra->sources.back().line

static void count_lines(LIBERTY_READING &reading, std::string_view text) {
    for (char character : text)
        reading.sources.back().line += character == '\n';
}

// What a kept statement is to the parser; 0 for one that is passed over, or was an order to the scanner.
static int end_statement(LIBERTY_READING &reading, LIBERTY_STATEMENT &value) {
    if (reading.word == nullptr || reading.word->key == INCLUDE_FILE)
        return 0;
    reading.statement.key = reading.word->key;
    value = std::move(reading.statement);
    return reading.word->token;
}

// The end of `name (words)` without a group behind it.
static void end_words(LIBERTY_READING &reading, void *scanner) {
    if (reading.word == nullptr)
        return;
    if (reading.word->shape == GROUP) // without contents it tells nothing
        reading.word = nullptr;
    else if (reading.word->key == INCLUDE_FILE) {
        liberty_include(reading);
        liberty_yypush_buffer_state(liberty_yy_create_buffer(nullptr, YY_BUF_SIZE, scanner), scanner);
    }
}

constexpr const char *NO_SHAPE = "a ':' or '(' is missing behind this name.";
constexpr const char *NO_PARENTHESIS = "the ')' of this statement is missing.";

#define END_STATEMENT                                                                                                \
    BEGIN(INITIAL);                                                                                                  \
    if (int kept = end_statement(reading, *yylval))                                                                  \
        return kept
%}

blank   [ \t\r\f\v]
plain   [^ \t\r\f\v\n(){};:,"\\/\[]
inner   [^ \t\r\f\v\]\n"{};(),]
word    ({plain}|\[{inner}*)+
string  \"([^"\\]|\\(.|\n))*

%%
%{
    LIBERTY_READING &reading = *yyextra;
%}

<INITIAL,HEAD,VALUE,WORDS,TAIL>{
{blank}+            ;
\\[ \t\r]*          ;
\\[ \t\r]*\n        ++LINE;
"//"[^\n]*          ;
"/*"                { reading.outer_state = YY_START; reading.inner_line = LINE; BEGIN(COMMENT); }
}
<VALUE,WORDS>{string}\\? liberty_fail(reading, "this string is not closed.");
<HEAD,WORDS,TAIL,INITIAL>\n ++LINE;

<COMMENT>{
[^*\n]+             ;
\n                  ++LINE;
"*/"                BEGIN(reading.outer_state);
"*"                 ;
<<EOF>>             liberty_fail(reading, "this comment is not closed.", reading.inner_line);
}

";"                 ;
{word}              {
                        reading.word = liberty_word(reading, TEXT);
                        reading.statement = {};
                        reading.statement.line = reading.start_line = LINE;
                        reading.size = 0;
                        BEGIN(HEAD);
                    }
"}"                 {
                        if (reading.open.empty())
                            liberty_fail(reading, "there is nothing that this '}' closes.");
                        reading.open.pop_back();
                        return '}';
                    }
<INITIAL><<EOF>>    {
                        if (reading.sources.size() == 1) {
                            liberty_check_end(reading);
                            yyterminate();
                        }
                        reading.sources.pop_back();
                        yypop_buffer_state(yyscanner);
                    }

<HEAD>{
":"                 { liberty_take_shape(reading, SIMPLE); BEGIN(VALUE); }
"("                 { liberty_take_shape(reading, GROUP); BEGIN(WORDS); }
<<EOF>>             liberty_fail(reading, NO_SHAPE, reading.start_line);
.                   liberty_fail(reading, NO_SHAPE, reading.start_line);
}

<VALUE>{
{word}|"/"          { liberty_add_word(reading, TEXT); }
{string}\"          { liberty_add_string(reading, TEXT); count_lines(reading, TEXT); }
[(),:]              liberty_add_word(reading, TEXT);
"{"                 liberty_fail(reading, "a '{' can't stand here.");
\n                  {
                        ++LINE;
                        if (reading.has_value && !reading.is_unfinished) {
                            END_STATEMENT;
                        }
                    }
";"                 { END_STATEMENT; }
"}"                 { yyless(0); END_STATEMENT; }
<<EOF>>             { END_STATEMENT; }
}

<WORDS>{
{word}|"/"          liberty_add_word(reading, TEXT);
{string}\"          { liberty_add_string(reading, TEXT); count_lines(reading, TEXT); }
,                   ;
[(:]                {
                        if (reading.word != nullptr)
                            liberty_fail(reading, liberty_stray(TEXT));
                        reading.depth += yytext[0] == '(';
                    }
")"                 {
                        if (--reading.depth == 0)
                            BEGIN(TAIL);
                    }
<<EOF>>             liberty_fail(reading, NO_PARENTHESIS, reading.start_line);
[;{}]               liberty_fail(reading, NO_PARENTHESIS, reading.start_line);
}

<TAIL>{
"{"                 {
                        if (reading.word != nullptr && reading.word->shape == GROUP) {
                            reading.open.push_back({reading.word->opens, reading.sources.back().file, reading.start_line});
                            END_STATEMENT;
                        }
                        reading.depth = 1;
                        BEGIN(SKIP_GROUP);
                    }
<<EOF>>             { end_words(reading, yyscanner); END_STATEMENT; }
[^{]                { yyless(0); end_words(reading, yyscanner); END_STATEMENT; }
}

<SKIP_GROUP>{
[^"{}/\\\n]+        ;
\n                  ++LINE;
\"[^"\\\n]*\"       ;
\"[^"\\\n]*         { reading.inner_line = LINE; BEGIN(SKIP_STRING); }
"{"                 ++reading.depth;
"}"                 {
                        if (--reading.depth == 0)
                            BEGIN(INITIAL);
                    }
"//"[^\n]*          ;
"/*"                { reading.outer_state = YY_START; reading.inner_line = LINE; BEGIN(COMMENT); }
[/\\]               ;
<<EOF>>             liberty_fail(reading, "the file ends within the group of this line.", reading.start_line);
}

<SKIP_STRING>{
[^"\\\n]+           ;
\\?\n               ++LINE;
\\[^\n]?            ;
\"                  BEGIN(SKIP_GROUP);
<<EOF>>             liberty_fail(reading, "this string is not closed.", reading.inner_line);
}

<*>.|\n             liberty_fail(reading, liberty_stray(TEXT));
%%

// A token that outgrows its buffer would hold what nobody needs.
void *liberty_yyrealloc(void *memory, yy_size_t size, yyscan_t scanner) {
    constexpr yy_size_t longest = 1 << 20;
    if (size > longest + (1 << 17))
        liberty_fail(*liberty_yyget_extra(scanner), "a name, a string or a line is longer than a million characters.");
    void *larger = std::realloc(memory, size);
    if (larger == nullptr)
        liberty_fail(*liberty_yyget_extra(scanner), "there is no memory left.");
    return larger;
}

namespace {

struct SCANNER {
    explicit SCANNER(LIBERTY_READING &reading) {
        if (liberty_yylex_init_extra(&reading, &handle) != 0)
            liberty_fail(reading, "there is no memory left.");
    }
    SCANNER(const SCANNER &) = delete;
    ~SCANNER() {
        liberty_yylex_destroy(handle);
    }
    yyscan_t handle = nullptr;
};

} // namespace

void liberty_parse(LIBERTY_READING &reading) {
    SCANNER scanner(reading);
    liberty_yy::parser(scanner.handle, reading).parse();
}
