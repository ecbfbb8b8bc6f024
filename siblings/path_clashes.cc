#include "siblings/path_clashes.hh"

#include <algorithm>

namespace {

// Behind a path, a name that begins with an index would get a base name.
bool is_plain_component(std::string_view text) {
    return !text.starts_with('[') && text.find('.') == std::string_view::npos;
}

bool scopes_repeat(const NL_MODULE &module) {
    std::unordered_set<int64_t> met;
    return std::any_of(module.scopes.begin(), module.scopes.end(), [&](const NL_SCOPE &scope) {
        return !met.insert(int64_t{scope.parent} << 32 | scope.name).second;
    });
}

// Calls `take` for each net and written instance that has a scope.
template <class T> void for_scoped_rows(const NL_MODULE &module, T take) {
    for (const NL_INSTANCE &instance : module.instances)
        if (instance.scope != NL_NONE && instance.first_pin != NL_NONE)
            take(instance.name, static_cast<size_t>(instance.scope));
    for (const NL_NET &net : module.nets)
        if (net.scope != NL_NONE)
            take(net.name, static_cast<size_t>(net.scope));
}

bool names_repeat(const NL_DESIGN &design, const NL_MODULE &module) {
    // The names of all scopes, sorted by scope: where each begins, and in the end where it ends.
    std::vector<size_t> place(module.scopes.size() + 1);
    for_scoped_rows(module, [&](int32_t, size_t scope) { place[scope + 1]++; });
    for (size_t scope = 0; scope < module.scopes.size(); scope++)
        place[scope + 1] += place[scope];
    std::vector<int32_t> names(place.back());
    for_scoped_rows(module, [&](int32_t name, size_t scope) { names[place[scope]++] = name; });

    std::vector<int32_t> last_scope(design.names.texts.size(), NL_NONE); // that has the name
    size_t first = 0;
    for (size_t scope = 0; scope < module.scopes.size(); scope++) {
        for (size_t i = first; i < place[scope]; i++) {
            int32_t &last = last_scope[static_cast<size_t>(names[i])];
            if (last == static_cast<int32_t>(scope))
                return true;
            last = static_cast<int32_t>(scope);
        }
        for (; first < place[scope]; first++) {
            NL_BIT bit;
            std::string_view text = NL_text(design.names, names[first]);
            if (!text.ends_with(']') || !NL_parse_bit(text, bit))
                continue;
            int32_t base = NL_find_name(design.names, bit.base);
            if (base >= 0 && last_scope[static_cast<size_t>(base)] == static_cast<int32_t>(scope))
                return true;
        }
    }
    return false;
}

} // namespace

bool PATHS_may_clash(const NL_DESIGN &design, const NL_MODULE &module) {
    return !module.scopes.empty() &&
           (!std::all_of(design.names.texts.begin(), design.names.texts.end(), is_plain_component) ||
            scopes_repeat(module) || names_repeat(design, module));
}
