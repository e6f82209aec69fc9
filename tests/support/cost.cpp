#include "tests/support/cost.h"

#include <array>
#include <cstdio>
#include <cstdlib>

#include <sys/resource.h>

namespace {

const char* const secondsName = "cost-seconds";
const char* const kibibytesName = "cost-kibibytes";

rusage Usage() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage;
}

double ProcessorSeconds(const rusage& usage) {
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

} // namespace

std::string InWords(const Cost& cost) {
    constexpr double mebibyte = 1 << 20;
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.1f MiB, %.3f s",
                  static_cast<double>(cost.bytes) / mebibyte, cost.seconds);
    return text.data();
}

Cost CostOf(const std::function<void(const Tools::Report&)>& work, double patience) {
    const Tools::IsolatedRun run = Tools::RunIsolated(
        [&](const Tools::Report& report) {
            const rusage before = Usage();
            work(report);
            const rusage after = Usage();
            report.Add(secondsName,
                       std::to_string(ProcessorSeconds(after) - ProcessorSeconds(before)));
            report.Add(kibibytesName, std::to_string(after.ru_maxrss - before.ru_maxrss));
        },
        patience);
    return {run.facts, run.ending,
            std::strtod(Tools::Fact(run.facts, secondsName).c_str(), nullptr),
            static_cast<std::size_t>(Tools::FactNumber(run.facts, kibibytesName)) * 1024};
}
