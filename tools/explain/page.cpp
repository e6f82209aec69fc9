#include "tools/explain/page.h"

#include "demo/show.h"
#include "tools/explain/flow.h"
#include "tools/explain/html.h"
#include "tools/explain/shots.h"
#include "tools/explain/texts.h"

#include <algorithm>
#include <cstdio>
#include <numeric>

namespace Explain {

namespace {

std::string Fixed(double number, int decimals) {
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", decimals, number);
    return text;
}

std::string Size(int width, int height) {
    return std::to_string(width) + " × " + std::to_string(height);
}

std::string Point(const double* p) {
    char text[64];
    std::snprintf(text, sizeof text, "(%.2f, %.2f, %.2f)", p[0], p[1], p[2]);
    return text;
}

std::string Point(const Vell::vec3& p) {
    return Numbers({p.x, p.y, p.z});
}

std::string Joined(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts)
        joined += (joined.empty() ? "" : "; ") + text;
    return joined;
}

std::string PassId(std::size_t index) {
    return "pass-" + std::to_string(index + 1);
}

// ----------------------------------------------------------------------------------- the page's
// head

/// The flight that the show is on, and how much of its time is over.
std::string FlightInWords(double time) {
    std::size_t index = Show::flightCount - 1;
    while (index > 0 && time < Show::flights[index].begin)
        --index;
    const Show::Flight& flight = Show::flights[index];
    const double flown =
        std::min((time - flight.begin) / static_cast<double>(flight.duration), 1.0);
    return std::to_string(index + 1) + " of " + std::to_string(Show::flightCount) + ", " +
           flight.name + ": from " + Point(flight.start) + " to " + Point(flight.end) + " in " +
           Number(flight.duration) + " s; " + Fixed(100.0 * flown, 0) + " % flown";
}

/// The value of a uniform in the pass of that name, as the first drawing used it.
std::string UniformOf(const FrameRecord& record, const std::string& pass,
                      const std::string& uniform) {
    for (const Passes::Pass& candidate : record.passes)
        for (const Passes::Program& program : candidate.programs)
            for (const Passes::Uniform& known : program.uniforms)
                if (candidate.name == pass && known.name == uniform)
                    return Numbers(known.values.front());
    return "";
}

std::string LevelsInWords(const FrameRecord& record) {
    std::vector<std::string> levels;
    if (const std::string split = UniformOf(record, "colour split", "offset"); !split.empty())
        levels.push_back("colour split by " + split);
    for (const Passes::Pass& pass : record.passes)
        if (pass.name == "bloom" && !pass.draws.empty())
            levels.push_back("glow weighs " + Number(pass.draws.back().colour[3]));
    return Joined(levels);
}

template <class Value>
Value Total(const FrameRecord& record, Value (*of)(const Passes::Pass& pass)) {
    return std::accumulate(record.passes.begin(), record.passes.end(), Value(),
                           [&](Value sum, const Passes::Pass& pass) { return sum + of(pass); });
}

std::string TotalsInWords(const FrameRecord& record) {
    const int draws = Total<int>(
        record, [](const Passes::Pass& pass) { return static_cast<int>(pass.draws.size()); });
    return Grouped(Total<int>(record, Passes::Vertices)) + " vertices, " +
           Grouped(Total<int>(record, Passes::Triangles)) + " triangles in " + Grouped(draws) +
           " calls and " + std::to_string(record.passes.size()) + " passes";
}

std::string TotalTime(const FrameRecord& record) {
    return Fixed(Total<double>(record, [](const Passes::Pass& pass) { return pass.milliseconds; }),
                 1) +
           " ms";
}

std::string Facts(const FrameRecord& record, Measured measured) {
    // A float, as the demo keeps it: it decides at a cut.
    const Timeline::Segment segment = Timeline::SegmentAt(static_cast<float>(record.time));
    Table table({"", ""});
    table.Row({"Demo time", Fixed(record.time, 3) + " s"});
    table.Row({"Frame", Grouped(record.frame) + ", counted from 0, at " +
                            Number(static_cast<double>(record.rate.frames) /
                                   static_cast<double>(record.rate.seconds)) +
                            " a second"});
    table.Row({"Timeline", Escape(DescriptionOf(segment))});
    table.Row({"Flight", Escape(FlightInWords(record.time))});
    table.Row({"Eye", Point(record.view.eye) + ", looking at " + Point(record.view.centre)});
    table.Row({"Music", "lowest band of the spectrum " + Number(record.lowestBand)});
    table.Row({"Effects", Escape(LevelsInWords(record))});
    table.Row({"In all", TotalsInWords(record)});
    if (measured == Measured::Shown) {
        table.Row({"Drawn in", TotalTime(record)});
        table.Row({"Drawn by", Escape(record.renderer)});
    }
    return table.Html();
}

std::string PassTable(const FrameRecord& record, const Shots& shots, Measured measured) {
    std::vector<std::string> heads = {"#",     "pass",   "",          "target",
                                      "#size", "#calls", "#vertices", "#triangles"};
    if (measured == Measured::Shown)
        heads.emplace_back("#ms");
    Table table(heads);
    for (std::size_t i = 0; i < record.passes.size(); ++i) {
        const Passes::Pass& pass = record.passes[i];
        std::vector<std::string> cells = {std::to_string(i + 1),
                                          LinkTo(PassId(i), Escape(pass.name)),
                                          shots.SmallPass(i),
                                          Escape(pass.target),
                                          Size(pass.width, pass.height),
                                          Grouped(static_cast<int>(pass.draws.size())),
                                          Grouped(Passes::Vertices(pass)),
                                          Grouped(Passes::Triangles(pass))};
        if (measured == Measured::Shown)
            cells.push_back(Fixed(pass.milliseconds, 2));
        table.Row(cells);
    }
    return table.Html();
}

std::string HowItWasMeasured() {
    return Element("p",
                   "Milliseconds: from glFinish() before a pass's first call to glFinish() "
                   "after its last, so passes do not overlap as they do in the show. The "
                   "frames just before were drawn as well, so that nothing is used for the "
                   "first time.",
                   "class=\"faint\"");
}

std::string Overview(const FrameRecord& record, const Shots& shots, Measured measured) {
    return "<section>" + Element("h2", "The passes, and what each reads") +
           Element("div", FlowDiagram(record.passes), "class=\"wide\"") +
           Element("p",
                   "A dot: the pass writes this target. A ring: it reads it. The bar lies "
                   "there for as long as what was written is still read.",
                   "class=\"faint\"") +
           PassTable(record, shots, measured) +
           (measured == Measured::Shown ? HowItWasMeasured() : "") + "</section>\n";
}

// ---------------------------------------------------------------------------------------- a pass

/// Each phrase of the calls' state with the number of calls that it holds for, and the clears.
std::string StateOf(const Passes::Pass& pass) {
    std::vector<std::pair<std::string, int>> phrases;
    for (const Passes::Draw& draw : pass.draws)
        for (const std::string& phrase : draw.state) {
            const auto known = std::find_if(phrases.begin(), phrases.end(),
                                            [&](const auto& row) { return row.first == phrase; });
            if (known == phrases.end())
                phrases.emplace_back(phrase, 1);
            else
                ++known->second;
        }
    std::string items;
    for (const std::string& clear : pass.clears)
        items += Element("li", "clears " + clear);
    const int all = static_cast<int>(pass.draws.size());
    for (const auto& [phrase, count] : phrases)
        items +=
            Element("li", Escape(phrase) + (count == all ? ""
                                                         : " (" + std::to_string(count) + " of " +
                                                               std::to_string(all) + " calls)"));
    return items.empty() ? "" : Element("h3", "Clears and state") + Element("ul", items) + "\n";
}

std::string ReadsOf(const Passes::Pass& pass, const Shots& shots) {
    if (pass.inputs.empty())
        return "";
    Table table({"", "reads", "by", "#size"});
    for (const Passes::Input& input : pass.inputs) {
        const std::string name = Escape(input.name);
        table.Row(
            {shots.SmallInput(input),
             input.pass < 0 ? name : LinkTo(PassId(static_cast<std::size_t>(input.pass)), name),
             Escape(input.reader), input.width > 0 ? Size(input.width, input.height) : ""});
    }
    return Element("h3", "Reads") + table.Html();
}

std::string ValuesOf(const Passes::Uniform& uniform) {
    std::vector<std::string> values;
    for (const std::vector<float>& value : uniform.values)
        values.push_back(uniform.type == "sampler2D" ? "unit " + Numbers(value) : Numbers(value));
    return Joined(values);
}

std::string UniformsOf(const Passes::Pass& pass) {
    std::string html;
    for (const Passes::Program& program : pass.programs) {
        if (program.uniforms.empty())
            continue;
        Table table({"uniform", "type", "value", "sent"});
        for (const Passes::Uniform& uniform : program.uniforms)
            table.Row({Escape(uniform.name), uniform.type, ValuesOf(uniform), uniform.sent});
        html += Element("h3", "Program: " + Escape(program.name)) + table.Html();
    }
    return html;
}

/// Without the folders, which the pass's other tables name.
std::string BaseName(const std::string& name) {
    return name.substr(name.rfind('/') + 1);
}

std::string DrawsOf(const Passes::Pass& pass) {
    Table table({"#", "call", "#vertices", "#triangles", "program", "reads", "state"});
    for (std::size_t i = 0; i < pass.draws.size(); ++i) {
        const Passes::Draw& draw = pass.draws[i];
        std::vector<std::string> reads;
        for (const int input : draw.inputs)
            reads.push_back(BaseName(pass.inputs[static_cast<std::size_t>(input)].name));
        table.Row({std::to_string(i + 1), draw.call, Grouped(draw.vertices),
                   Grouped(draw.triangles),
                   Escape(BaseName(pass.programs[static_cast<std::size_t>(draw.program)].name)),
                   Escape(Joined(reads)), Escape(Joined(draw.state))});
    }
    const std::size_t count = pass.draws.size();
    return Element("details", Element("summary", count == 1 ? "The call that draws"
                                                            : "The " + std::to_string(count) +
                                                                  " calls that draw") +
                                  table.Html());
}

std::string CostOf(const Passes::Pass& pass, Measured measured) {
    return Grouped(static_cast<int>(pass.draws.size())) +
           (pass.draws.size() == 1 ? " call, " : " calls, ") + Grouped(Passes::Vertices(pass)) +
           " vertices, " + Grouped(Passes::Triangles(pass)) + " triangles" +
           (measured == Measured::Shown ? ", " + Fixed(pass.milliseconds, 2) + " ms" : "");
}

std::string Section(const FrameRecord& record, std::size_t index, const Shots& shots,
                    Measured measured) {
    const Passes::Pass& pass = record.passes[index];
    const std::string title =
        std::to_string(index + 1) + ". " + Escape(pass.name) + " " +
        Element("small", "→ " + Escape(pass.target) + ", " + Size(pass.width, pass.height));
    return Element("section",
                   Element("h2", title) + "\n" + Element("p", Escape(PurposeOf(pass.name))) +
                       shots.PassFigures(index) + Element("p", CostOf(pass, measured)) +
                       ReadsOf(pass, shots) + StateOf(pass) + UniformsOf(pass) + DrawsOf(pass),
                   "id=\"" + PassId(index) + "\"") +
           "\n";
}

} // namespace

std::string PageOf(const FrameRecord& record, Measured measured) {
    const Shots shots(record);
    const std::string title = "Nimbrel at " + Fixed(record.time, 3) + " s, pass by pass";
    std::string body = Element("h1", title) + "\n" + shots.Final() + Facts(record, measured) +
                       Overview(record, shots, measured);
    for (std::size_t i = 0; i < record.passes.size(); ++i)
        body += Section(record, i, shots, measured);
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\"/>\n"
           "<meta name=\"viewport\" content=\"width=device-width\"/>\n" +
           Element("title", title) + "\n" + Element("style", StyleSheet() + shots.Style()) +
           "\n</head>\n<body>\n" + body + "</body>\n</html>\n";
}

} // namespace Explain
