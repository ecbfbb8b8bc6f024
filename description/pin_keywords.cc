// The keywords of the pin file.
#include "description/keywords.hh"

#include "pin_parser.hh"

const KEYWORD *pin_keyword_lookup(const char *text) {
    static constexpr KEYWORD keywords[] = {
        {"BSC", PIN_BSC},
        {"PAD", PIN_PAD},
        {"I", PIN_I},
        {"O", PIN_O},
        {"C", PIN_C},
        {"IO", PIN_IO},
        {"I_ONLY", PIN_I_ONLY},
        {"O_ONLY", PIN_O_ONLY},
        {"PAD_EN_L", PIN_PAD_EN_L},
        {"PAD_EN_H", PIN_PAD_EN_H},
        {"%PACKAGE_TYPE", PIN_PACKAGE_TYPE},
        {"%ALLOWED_MULTIPLE", PIN_ALLOWED_MULTIPLE},
    };
    static const auto &hash = *new KEYWORD_HASH(load_keywords(keywords));
    return find_keyword(hash, text);
}
