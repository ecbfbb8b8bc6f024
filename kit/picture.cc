// rimkit picture: DESIGN.html and DESIGN.svg, the boundary register of a finished run for the eye.
#include "kit/picture_layout.hh"

#include "kit/json.hh"
#include "kit/verbs.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <cstdio>

namespace {

constexpr KIT_OPTION PICTURE_OPTIONS[] = {
    {"output", "FILE", "the page to write, DESIGN.html otherwise; the .svg lies beside it"},
    {"opath", "DIR", "the folder that the run's -opath named"},
    {"def", "FILE", "placement: the pads stand as round the die, and not as in\nthe pin file"},
    {"engines", nullptr, "the findings of the simulation and the proofs of `rimkit\ncheck`, too"},
    {"liberty", "FILE", "Liberty library of the pads, plain or .gz, for check and\ndoctor; may be repeated",
     true},
    {"cells", "FILE", "Verilog models of the cells, for --engines; may be repeated", true},
};

/// The name of the plain SVG: the page's with another ending.
std::string svg_name(const std::string &page) {
    size_t dot = page.ends_with(".html")  ? page.size() - 5
                 : page.ends_with(".htm") ? page.size() - 4
                                          : page.size();
    return page.substr(0, dot) + ".svg";
}

void show(const KIT_CALL &call, const PICTURE &picture, const std::vector<std::string> &written) {
    if (kit_has(call, "json"))
        std::printf("{\"design\": %s, \"cells\": %zu, \"pads\": %zu, \"findings\": %zu, \"files\": %s}\n",
                    json_text(picture.design).c_str(), picture.cells.size(), picture.pads.size(),
                    picture.findings.size(), json_list(written).c_str());
    else
        std::printf("%s, %s: %zu pads, %zu boundary cells, %zu findings\n", written[0].c_str(),
                    written[1].c_str(), picture.pads.size(), picture.cells.size(), picture.findings.size());
    if (!picture.is_whole && !kit_has(call, "json"))
        std::printf("the chain is broken: the cells up to there are shown, and no pads with them\n");
}

/// Takes the switches of the run, which are the doctor's, away from the names.
KIT_CALL without_switches(KIT_CALL call, std::vector<std::string> &switches) {
    std::vector<std::string> names;
    for (const std::string &name : call.names) {
        if (lower_case(name) == "-opath")
            kit_usage_fault("the folder of the run's -opath is given by --opath");
        (name[0] == '-' ? switches : names).push_back(name);
    }
    call.names = names;
    return call;
}

int run_picture(const KIT_CALL &given) {
    PICTURE_WORDS words{kit_values(given, "liberty"), {}, kit_has(given, "engines")};
    KIT_CALL call = without_switches(given, words.switches);
    FINISHED_RUN run = finished_run(call);
    need_run_files(run, "picture");
    std::vector<FINDING> doctor = picture_doctor(run, words);
    CHECK_RESULT checked = check_chip(run, {.liberty = words.liberty, .has_engines = words.has_engines});
    PICTURE picture;
    read_picture(picture, run);
    if (kit_has(call, "def"))
        place_picture(picture, kit_value(call, "def"));
    take_picture_findings(picture, checked, words.has_engines, doctor);
    std::string page = kit_value(call, "output", run.design + ".html");
    std::vector<std::string> written = {page, svg_name(page)};
    PICTURE_LAYOUT whole = picture_layout(picture, false), folded = picture_layout(picture, true);
    TOOL_write_file(written[0], picture_page(picture, whole, folded));
    TOOL_write_file(written[1], "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" +
                                    picture_svg(picture, whole, "ring", true));
    show(call, picture, written);
    return KIT_DONE;
}

} // namespace

const KIT_VERB kit_picture = {
    "picture",
    "Shows the boundary register for the eye: DESIGN.html and DESIGN.svg.",
    "[options] DESIGN [rimweave switches]",
    PICTURE_OPTIONS,
    "  rimkit picture --engines --cells cells.v chip\n",
    true,
    run_picture,
};
