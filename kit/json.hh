// Words of JSON.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

/// The text as a JSON string, with its quotes.
inline std::string json_text(std::string_view text) {
    std::string quoted = "\"";
    for (char c : text) {
        char code[8];
        std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned char>(c));
        if (c == '"' || c == '\\')
            quoted += std::string("\\") + c;
        else
            quoted += static_cast<unsigned char>(c) < ' ' ? std::string(code) : std::string(1, c);
    }
    return quoted + "\"";
}

/// The texts as a JSON list.
inline std::string json_list(const std::vector<std::string> &texts) {
    std::string list;
    for (const std::string &text : texts)
        list += (list.empty() ? "" : ", ") + json_text(text);
    return "[" + list + "]";
}
