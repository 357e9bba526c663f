#include "bench/harness/Report.h"

#include <fmt/format.h>

#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace bench {

namespace {

using nlohmann::json;

json JsonOf(const Figure& figure) {
    return {{"median", figure.median}, {"least", figure.least}, {"greatest", figure.greatest}};
}

json JsonOf(const Result& result) {
    const Case& measured = result.measured;
    json ways = json::array();
    for (size_t i = 0; i < measured.ways.size(); ++i) {
        ways.push_back({{"name", measured.ways[i].name},
                        {"nanoseconds", JsonOf(result.nanoseconds[i])},
                        {"ratio", JsonOf(result.ratios[i])}});
    }
    json line = {{"section", measured.section}, {"what", measured.what}, {"size", measured.size}, {"ways", ways}};
    if (measured.aim) {
        line["aim"] = *measured.aim;
    }
    line["mustBeatPeers"] = measured.mustBeatPeers;
    return line;
}

json JsonOf(const Amount& amount) {
    json others = json::array();
    for (const auto& [name, number] : amount.others) {
        others.push_back({{"name", name}, {"amount", number}});
    }
    return {{"section", amount.section}, {"what", amount.what}, {"size", amount.size}, {"unit", amount.unit},
            {"ours", amount.ours},       {"others", others},    {"aim", amount.aim},   {"isMet", amount.isMet}};
}

}  // namespace

void Report::Add(const Result& result) {
    const Case& measured = result.measured;
    std::string line = fmt::format("{:<12} {:<34}", measured.section, measured.what);
    for (size_t i = 0; i < measured.ways.size(); ++i) {
        line += fmt::format(" {} {:.1f} >={:.1f}", measured.ways[i].name, result.nanoseconds[i].median,
                            result.nanoseconds[i].least);
        if (i != 0) {
            line += fmt::format(" ({:.2f}, {:.2f} to {:.2f})", result.ratios[i].median, result.ratios[i].least,
                                result.ratios[i].greatest);
        }
    }
    fmt::print("{}\n", line);
    std::fflush(stdout);
    results.push_back(result);
}

void Report::Add(const Amount& amount) {
    std::string line = fmt::format("{:<12} {:<34} ours {:.1f}", amount.section, amount.what, amount.ours);
    for (const auto& [name, number] : amount.others) {
        line += fmt::format(" {} {:.1f}", name, number);
    }
    fmt::print("{} {}\n", line, amount.unit);
    std::fflush(stdout);
    amounts.push_back(amount);
}

void Report::Write(const std::string& file) const {
    json all = {{"results", json::array()}, {"amounts", json::array()}};
    for (const Result& result : results) {
        all["results"].push_back(JsonOf(result));
    }
    for (const Amount& amount : amounts) {
        all["amounts"].push_back(JsonOf(amount));
    }
    std::ofstream stream(file, std::ios::binary);
    stream << all.dump(1) << '\n';
    if (!stream.flush()) {
        throw std::runtime_error("cannot write " + file);
    }
}

}  // namespace bench
