// Small designs for the planning tests, from a text that can be read beside the expected rows:
//
//     in a                            a port, on the net of its name; `out` and `io` likewise
//     IBUF pa PAD=a C=n_a             an instance; a pin that is not named hangs free
//     IBUF u_pads:PADS.pb PAD=b C=n_b the instance pb in the module instance u_pads of class PADS
//
// The nets 0 and 1 are the constants. The cells are those of CELLS.
#pragma once

#include "sdb/sdb_writer.hh"

#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

inline constexpr std::string_view CELLS = R"(
    IBUF PAD:in C:out
    CBUF PAD:in C:out
    OBUF I:in PAD:out
    TBUF I:in OEN:in EN:in PAD:out
    SAME I:in EN:in PAD:out
    EBUF OEN:in PAD:out
    BBUF I:in OEN:in PAD:io C:out
    HBUF I:in EN:in PAD:out
    DINP PP:in PM:in PX:in C:out
    DOUT I:in OEN:in PP:out PM:out
    BSIN PAD:in C:out
    BSOE I:in OEN:in PAD:out
    BSIO I:in OEN:in PAD:io C:out
    MUXI PAD:in C:out T:in S:in
    MUXC PAD:in C:out T:in S:in
    MUXO I:in T:in S:in PAD:out
    MUXT I:in T:in S:in OEN:in PAD:out
    MUXE OEN:in T:in S:in PAD:out
    MXB1 I:in OEN:in PAD:io C:out T:in S:in
    MXB2 I:in OEN:in PAD:io C:out T:in S:in T2:in S2:in
    PLAIN A:in Z:out
    FEED A:in Z:out
    GATE A:in B:in Z:out
    XPAD A:in PAD:io
    TIEX Z:out A:in
    TAPC mode2:out
)";

class design_builder {
  public:
    explicit design_builder(const std::string &path) : design(SDB_open(path.c_str(), "w", 0)) {
        for (const char *name : {"GND", "VCC"})
            nets[std::string(name == std::string("GND") ? "0" : "1")] =
                SDB_add_net(design, SDB_plain_name(design, name));
        each_line(CELLS, [this](std::istringstream &words) {
            std::string name, pin;
            words >> name;
            std::vector<std::string> names;
            std::vector<int32_t> directions;
            while (words >> pin) {
                names.push_back(pin.substr(0, pin.find(':')));
                directions.push_back(direction(pin.substr(pin.find(':') + 1)));
            }
            std::vector<SDB_NEW_PIN> pins;
            for (size_t i = 0; i < names.size(); ++i)
                pins.push_back({names[i], directions[i]});
            SDB_add_class(design, name, SDB_KIND_CELL, std::span<const SDB_NEW_PIN>(pins));
        });
    }

    void add(std::string_view text) {
        each_line(text, [this](std::istringstream &words) {
            std::string first, second;
            words >> first >> second;
            if (first == "in" || first == "out" || first == "io") {
                int32_t port = SDB_add_port(design, second, direction(first));
                SDB_connect(design, SDB_port_node(design, port), net(second));
            } else {
                add_instance(first, second, words);
            }
        });
    }

    void save() {
        SDB_close(design, 1);
    }

  private:
    static int32_t direction(const std::string &word) {
        return word == "in" ? SDB_INPUT : word == "out" ? SDB_OUTPUT : SDB_BIDIRECTIONAL;
    }
    template <class F> static void each_line(std::string_view text, F take) {
        std::istringstream lines{std::string(text)};
        for (std::string line; std::getline(lines, line);) {
            std::istringstream words(line);
            if (!(words >> std::ws).eof())
                take(words);
        }
    }
    int32_t net(const std::string &name) {
        auto [known, is_new] = nets.try_emplace(name, -1);
        if (is_new)
            known->second = SDB_add_net(design, SDB_plain_name(design, name));
        return known->second;
    }
    /// The prefix row of a path "inst:CLASS.inst:CLASS.inst" without its last component, made when it is new.
    int32_t module_row(const std::string &path) {
        if (path.empty())
            return -1;
        auto [known, is_new] = modules.try_emplace(path, -1);
        if (!is_new)
            return known->second;
        size_t dot = path.rfind('.');
        std::string last = dot == path.npos ? path : path.substr(dot + 1);
        int32_t parent = module_row(dot == path.npos ? "" : path.substr(0, dot));
        size_t colon = last.find(':');
        int32_t row = SDB_add_prefix(design, last.substr(0, colon), parent);
        SDB_set_prefix_class(design, row, last.substr(colon + 1));
        return modules[path] = row;
    }
    void add_instance(const std::string &class_name, const std::string &path, std::istringstream &words) {
        int32_t cell = SDB_find_class(design, class_name);
        size_t dot = path.rfind('.');
        int32_t name = dot == path.npos ? SDB_plain_name(design, path)
                                        : SDB_prefix_name(SDB_add_prefix(design, path.substr(dot + 1),
                                                                         module_row(path.substr(0, dot))));
        int32_t obj = SDB_add_obj(design, name, cell);
        for (std::string pin; words >> pin;) {
            int32_t number = SDB_find_class_pin(design, cell, pin.substr(0, pin.find('=')));
            SDB_connect(design, SDB_obj_node(design, obj, number), net(pin.substr(pin.find('=') + 1)));
        }
    }

    SDB_HANDLE *design;
    std::map<std::string, int32_t> nets, modules;
};
