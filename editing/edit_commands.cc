#include "editing/edit_commands.hh"

#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/whole_file.hh"

#include <algorithm>
#include <string_view>

namespace {

std::string known(const char *name) {
    return text_or_undefined(name);
}

bool is_blank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// The language parts its words at blanks, so a name with one would silently become two words.
void check_word(const EDIT_FILE *file, std::string_view word) {
    if (word.empty() || std::ranges::any_of(word, is_blank))
        vmr_fail("ERROR: the name '%.*s' can't stand in command file '%s': it is empty or holds a blank.\n\n",
                 static_cast<int>(word.size()), word.data(), file->path.c_str());
}

void add_operand(EDIT_FILE *file, const EDIT_OPERAND &operand) {
    std::string &text = file->text;
    size_t start = text.size();
    if (operand.kind == EDIT_OPERAND::PIN)
        text.append(operand.instance).append("{").append(operand.name).append("}");
    else
        text += operand.name;
    check_word(file, std::string_view(text).substr(start));
}

} // namespace

EDIT_OPERAND pin_of(const char *instance, const char *pin) {
    return {EDIT_OPERAND::PIN, known(instance), known(pin)};
}

EDIT_OPERAND pin_of(const std::string &instance, const char *pin) {
    return {EDIT_OPERAND::PIN, instance, known(pin)};
}

EDIT_OPERAND port_net(const char *name) {
    return {EDIT_OPERAND::NET, "", known(name)};
}

EDIT_OPERAND design_net(int32_t net) {
    EDIT_OPERAND::KIND kind =
        net == SDB_NET_GND || net == SDB_NET_VCC ? EDIT_OPERAND::CONSTANT : EDIT_OPERAND::NET;
    return {kind, "", known(SDB_net_name(sdb, net))};
}

EDIT_OPERAND constant_one() {
    return {EDIT_OPERAND::CONSTANT, "", "VCC"};
}

EDIT_OPERAND constant_zero() {
    return {EDIT_OPERAND::CONSTANT, "", "GND"};
}

EDIT_OPERAND free_net() {
    return {EDIT_OPERAND::NET, "", "X_NET"};
}

EDIT_OPERAND tap_signal(const EDIT_FILE *file, const char *pin) {
    return file->tap != nullptr ? pin_of(file->tap, pin) : port_net(pin);
}

EDIT_FILE *edit_begin_file(const std::string &path, const std::string &module, bool with_path) {
    if (!can_write_file(path))
        return nullptr;
    auto *file = new EDIT_FILE{path, {}};
    check_word(file, module);
    file->text = "edit " + module + "\n";
    // The blank before the line end belongs to the line.
    if (with_path)
        file->text += "path " + std::string(RIMWEAVE_OPATH) + " \n";
    return file;
}

void edit_end_file(EDIT_FILE *&file) {
    file->text += "save\nquit\n";
    if (!write_text_file(file->path, file->text))
        vmr_fail("ERROR: can't open command file \"%s\" to update SDB.\n", file->path.c_str());
    delete file;
    file = nullptr;
}

void edit_add_instance(EDIT_FILE *file, const std::string &instance, const char *cell) {
    check_word(file, instance);
    check_word(file, known(cell));
    file->text += "add " + instance + " " + known(cell) + "\n";
}

void edit_add_port(EDIT_FILE *file, const char *name, EDIT_PORT direction) {
    check_word(file, known(name));
    file->text += "add " + known(name) + (direction == EDIT_INPUT ? " input\n" : " output\n");
}

void edit_disconnect(EDIT_FILE *file, const EDIT_OPERAND &operand, EDIT_BLANKS blanks) {
    file->text += blanks == EDIT_WIDE ? "disconnect  " : "disconnect ";
    add_operand(file, operand);
    file->text += "\n";
}

void edit_connect(EDIT_FILE *file, const EDIT_OPERAND &a, const EDIT_OPERAND &b, EDIT_BLANKS blanks) {
    file->text += blanks == EDIT_LEADING_BLANK ? " connect " : blanks == EDIT_WIDE ? "connect  " : "connect ";
    add_operand(file, a);
    file->text += blanks == EDIT_WIDE || blanks == EDIT_WIDE_SECOND ? "  " : " ";
    add_operand(file, b);
    file->text += blanks == EDIT_TRAILING_BLANK ? " \n" : "\n";
}

void edit_replace(EDIT_FILE *file, const char *instance, const std::string &module) {
    check_word(file, known(instance));
    check_word(file, module);
    file->text += "replace " + known(instance) + " " + module + "\n";
}
