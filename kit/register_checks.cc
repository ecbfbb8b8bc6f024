// The register that was found, held against the boundary order file. A wire that is wrong makes a netlist
// that is another chip, and as such can be described: what it should have been stands there, and in the
// design before the run (kit/prove_compare.cc).
#include "kit/boundary_register.hh"

#include "kit/chip.hh"
#include "planning/open_design.hh"
#include "sdb/navigation.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>
#include <unordered_map>

namespace {

// ---- the boundary order file --------------------------------------------------------------------------

struct ORDER_ROW {
    int32_t place = -1;
    std::string port;
    bool drives = false; ///< by its function
    std::vector<std::string> instances;
};
struct ORDER_CONTROL {
    std::string instance;
    int32_t first = -1, last = -1;
};
struct ORDER_FILE {
    std::vector<ORDER_ROW> rows;
    std::vector<ORDER_CONTROL> controls;
};

std::vector<std::string> words_of(const std::string &line) {
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

/// "[OE RANGE]   0:  8    *" and "[OE RANGE]   9    *".
void read_range(const std::string &line, ORDER_CONTROL &control) {
    size_t at = line.find(']'), colon = line.find(':');
    if (at == line.npos)
        return;
    control.first = control.last = std::atoi(line.c_str() + at + 1);
    if (colon != line.npos)
        control.last = std::atoi(line.c_str() + colon + 1);
}

bool read_order(const std::string &path, ORDER_FILE &order) {
    if (!TOOL_exists(path))
        return false;
    std::istringstream text(TOOL_read_file(path));
    for (std::string line; std::getline(text, line);) {
        std::vector<std::string> words = words_of(line);
        if (words.empty() || words[0].compare(0, 2, "//") == 0)
            continue;
        if (words[0] == "[CONTROL") {
            order.controls.push_back({words.back(), -1, -1});
        } else if (words[0] == "[OE" && !order.controls.empty()) {
            read_range(line, order.controls.back());
        } else if (words[0][0] != '[' && words.size() == 7) {
            ORDER_ROW row{words[0] == "*" ? -1 : std::atoi(words[0].c_str()),
                          words[2],
                          words[5].compare(0, 6, "output") == 0 || words[5] == "bidir",
                          {}};
            std::istringstream list(words[6]);
            for (std::string name; std::getline(list, name, ',');)
                if (name != "*")
                    row.instances.push_back(name);
            order.rows.push_back(std::move(row));
        }
    }
    return true;
}

std::string last_component(const std::string &instance) {
    return instance.substr(instance.rfind('.') + 1);
}

void order_fault(BOUNDARY_REGISTER &found, const std::string &text, const std::string &instance,
                 const std::string &port) {
    found.faults.push_back({"order", text, instance, "", port});
}

/// The cells of the walk by what the order file calls them.
struct WALKED_CELLS {
    std::unordered_map<std::string, int32_t> number; ///< -2 for a name that two of them have
    std::unordered_map<std::string, std::vector<int32_t>> of_port;
    std::set<std::string> driven; ///< ports
    std::unordered_map<int32_t, std::vector<std::string>> ports_of_control;
};

WALKED_CELLS walked_cells(const BOUNDARY_REGISTER &found) {
    WALKED_CELLS cells;
    for (size_t i = 0; i < found.cells.size(); ++i) {
        auto [place, is_new] =
            cells.number.emplace(last_component(found.cells[i].instance), static_cast<int32_t>(i));
        place->second = is_new ? place->second : -2;
    }
    for (const REGISTER_ROW &row : found.rows)
        if (row.port >= 0) {
            cells.of_port[chip_port_name(row.port)].push_back(row.cell);
            if (row.kind >= ROW_OUTPUT2 && row.kind <= ROW_BIDIR)
                cells.driven.insert(chip_port_name(row.port));
            if (row.control >= 0)
                cells.ports_of_control[row.control].push_back(chip_port_name(row.port));
        }
    return cells;
}

/// The place that a cell's own name tells: 12 of "BCELL12_OUT"; -1 for a cell of the design.
int32_t place_in_name(const std::string &instance) {
    std::string name = last_component(instance);
    size_t end = 5;
    while (end < name.size() && name[end] >= '0' && name[end] <= '9')
        ++end;
    bool has_form = name.compare(0, 5, "BCELL") == 0 && end > 5 && (end == name.size() || name[end] == '_');
    return has_form ? std::atoi(name.c_str() + 5) : -1;
}

/// True for a port whose pad the walk found to be turned on and off by others; whether it should be is asked
/// of the design before the run.
bool stays_with_core(const BOUNDARY_REGISTER &found, const std::string &name) {
    int32_t port = SDB_nl_search_port(name.c_str());
    return port >= 0 && (found.ports[static_cast<size_t>(port)].follows_core ||
                         found.ports[static_cast<size_t>(port)].is_off);
}

void compare_row(BOUNDARY_REGISTER &found, const WALKED_CELLS &cells, const ORDER_ROW &row) {
    auto walked = cells.of_port.find(row.port);
    bool stands_there = row.instances.empty();
    for (const std::string &instance : row.instances) {
        auto number = cells.number.find(instance);
        if (number == cells.number.end()) {
            order_fault(found, "the order file has a cell that the chain does not reach", instance, row.port);
            return;
        }
        stands_there = stands_there || number->second == row.place || number->second == -2;
        bool serves = walked != cells.of_port.end() && std::find(walked->second.begin(), walked->second.end(),
                                                                 number->second) != walked->second.end();
        // What is inside the core has no port, and a pad that stays with the core no row.
        bool is_free =
            number->second == -2 || row.port.find('{') != row.port.npos || stays_with_core(found, row.port);
        if (!serves && !is_free)
            order_fault(found, "the cell does not serve the port that the order file gives it", instance,
                        row.port);
    }
    if (row.drives && !row.instances.empty() && !cells.driven.contains(row.port) &&
        !stays_with_core(found, row.port) && row.port.find('{') == row.port.npos)
        order_fault(found, "no cell drives the port, which is an output in the order file", row.instances[0],
                    row.port);
    if (!stands_there)
        order_fault(found, format_text("the order file has the cell at %d, the chain elsewhere", row.place),
                    row.instances[0], row.port);
}

void compare_controls(BOUNDARY_REGISTER &found, const WALKED_CELLS &cells, const ORDER_FILE &order) {
    std::unordered_map<std::string, int32_t> place_of_port;
    for (const ORDER_ROW &row : order.rows)
        place_of_port.emplace(row.port, row.place);
    for (const ORDER_CONTROL &control : order.controls) {
        auto number = cells.number.find(control.instance);
        if (number == cells.number.end() || number->second < 0 || control.first < 0)
            continue;
        auto ports = cells.ports_of_control.find(number->second);
        if (ports == cells.ports_of_control.end())
            order_fault(found, "the control cell of the order file holds no pad", control.instance, "");
        for (const std::string &port :
             ports != cells.ports_of_control.end() ? ports->second : std::vector<std::string>{}) {
            auto place = place_of_port.find(port);
            if (place != place_of_port.end() && place->second >= 0 &&
                (place->second < control.first || place->second > control.last))
                order_fault(found,
                            "the control cell turns a port off that is outside its range in the order file",
                            control.instance, port);
        }
    }
}

} // namespace

void compare_boundary_order(BOUNDARY_REGISTER &found, const std::string &bso_file) {
    if (found.cells.empty())
        return;
    ORDER_FILE order;
    if (!read_order(bso_file, order)) {
        order_fault(found, "there is no order file '" + bso_file + "'", "", "");
        return;
    }
    WALKED_CELLS cells = walked_cells(found);
    for (size_t i = 0; i < found.cells.size(); ++i)
        if (int32_t place = place_in_name(found.cells[i].instance);
            place >= 0 && place != static_cast<int32_t>(i))
            order_fault(found, format_text("the chain has this cell at %zu, its name says %d", i, place),
                        found.cells[i].instance, "");
    for (const ORDER_ROW &row : order.rows)
        compare_row(found, cells, row);
    compare_controls(found, cells, order);
}
