// The alias side file of a design: other names for nets and ports.
#include "sdb/sdb.hh"

#include "support/dyna.hh"
#include "support/fnm.hh"
#include "support/text.hh"

#include <cstdio>
#include <cstring>
#include <sstream>
#include <unordered_map>
#include <unordered_set>
#include <vector>

std::string asn_file_name;
ALIAS_NET *alias_net_tab = nullptr;
int32_t alias_net_count = 0;
ALIAS_PORT *sdb_port_aliasG = nullptr;

namespace {

/// Rows of alias_net_tab by target, and the pairs that are there. Texts are kept ones, so that equal texts
/// are one address.
std::unordered_map<const char *, std::vector<int32_t>> rows_by_target;
std::unordered_map<const char *, std::unordered_set<const char *>> targets_by_name;

std::string read_text(const std::string &path) {
    std::string text;
    std::FILE *file = FNM_open(path.c_str());
    if (file == nullptr)
        return text;
    char piece[65536];
    for (size_t n; (n = std::fread(piece, 1, sizeof piece, file)) > 0;)
        text.append(piece, n);
    std::fclose(file);
    return text;
}

/// The next token of the file; empty at its end.
std::string next_token(std::istream &file) {
    std::string token;
    file >> token;
    return token;
}

/// A name, with its index when that stands apart.
std::string next_name(std::istream &file) {
    std::string name = next_token(file);
    return (file >> std::ws).peek() == '[' ? name + next_token(file) : name;
}

void free_port_aliases() {
    for (ALIAS_PORT &row : rows(sdb_port_aliasG))
        DYNA_free(&row.aliases);
    DYNA_free(&sdb_port_aliasG);
    sdb_port_aliasG = nullptr;
}

/// Reads the aliases of one port up to the closing ';'; false at the end of the file.
bool read_port_aliases(std::istream &file) {
    ALIAS_PORT &row = append_row(sdb_port_aliasG);
    row.port = keep_text(next_token(file));
    row.aliases = DYNA_init<const char *>();
    for (std::string token = next_token(file); token != ";"; token = next_token(file)) {
        if (token.empty())
            return false;
        append_row(row.aliases, keep_text(token));
    }
    return true;
}

} // namespace

void ALIAS_init() {
    std::istringstream file(read_text(asn_file_name));
    for (std::string token = next_token(file); !token.empty(); token = next_token(file)) {
        if (token == "ASSIGN") {
            std::string name = next_name(file);
            std::string target = next_name(file);
            ALIAS_add(name.c_str(), target.c_str());
        } else if (token == "ALIAS" && !read_port_aliases(file)) {
            sdb_log_error(2,
                          "(FA-01-0006) The sdb file '%s' is corrupted. Please generate the sdb file again.",
                          asn_file_name.c_str());
            free_port_aliases();
        }
    }
}

void ALIAS_add(const char *name, const char *target) {
    if (name == nullptr || target == nullptr || *name == '\0' || *target == '\0')
        return;
    const char *kept_name = keep_text(name);
    const char *kept_target = keep_text(target);
    if (!targets_by_name[kept_name].insert(kept_target).second)
        return;
    std::vector<int32_t> moved;
    if (kept_name != kept_target) {
        moved.swap(rows_by_target[kept_name]);
        rows_by_target.erase(kept_name);
    }
    for (int32_t row : moved) {
        targets_by_name[alias_net_tab[row].name].erase(kept_name);
        targets_by_name[alias_net_tab[row].name].insert(kept_target);
        alias_net_tab[row].target = kept_target;
    }
    append_row(alias_net_tab, ALIAS_NET{kept_name, kept_target});
    std::vector<int32_t> &at_target = rows_by_target[kept_target];
    at_target.insert(at_target.end(), moved.begin(), moved.end());
    at_target.push_back(alias_net_count++);
}

int ALIAS_write() {
    if (alias_net_count == 0 && DYNA_count(sdb_port_aliasG) == 0)
        return 0;
    std::string text;
    for (const ALIAS_NET &row : rows(alias_net_tab))
        text += format_text("ASSIGN %s %s\n", row.name, row.target);
    for (const ALIAS_PORT &row : rows(sdb_port_aliasG)) {
        text += std::string("ALIAS ") + row.port;
        for (const char *alias : rows(row.aliases))
            text += std::string(" ") + alias;
        text += " ;\n";
    }
    whole_file file;
    if (!begin_file(file, asn_file_name))
        return 1;
    put_bytes(file, text.data(), text.size());
    return finish_file(file) ? 0 : 1;
}

void ALIAS_free() {
    DYNA_free(&alias_net_tab);
    alias_net_tab = nullptr;
    alias_net_count = 0;
    free_port_aliases();
    rows_by_target.clear();
    targets_by_name.clear();
    asn_file_name.clear();
}
