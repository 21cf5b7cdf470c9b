#include "driver/report.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "driver/process.h"

namespace bench {

namespace {

std::string ratio(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.3f", value);
    return text;
}

// The six columns of a line.
std::vector<std::string> columns(const Row& row) {
    const std::string most = !row.atMost ? "" : row.ratio ? ratio(*row.atMost) : number(*row.atMost);
    const std::string unit = row.unit.empty() ? "" : " " + row.unit;
    return {row.what,
            number(row.value) + unit,
            row.beside.empty() ? "" : row.beside + " " + number(row.besideValue) + unit,
            row.ratio ? ratio(*row.ratio) : "",
            most,
            row.isOver() ? "over" : ""};
}

std::string betweenMarks(const std::string& page, const std::string& name, const std::string& text) {
    const std::string begin = "<!-- " + name + " -->\n";
    const std::string end = "<!-- /" + name + " -->";
    const std::size_t from = page.find(begin);
    const std::size_t to = page.find(end);
    if (from == std::string::npos || to == std::string::npos) fail("the page has no marks for " + name);
    return page.substr(0, from + begin.size()) + text + page.substr(to);
}

}  // namespace

std::string number(double value) {
    char text[40];
    const double size = std::abs(value);
    std::snprintf(text, sizeof text, size >= 100 ? "%.0f" : size >= 10 ? "%.1f" : "%.2f", value);
    return text;
}

double median(std::vector<double> values) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void Report::add(const Row& row) {
    if (_rows.empty() || _rows.back().table != row.table) {
        std::printf("\n%-34s %14s   %-24s %8s %8s\n", row.table.c_str(), "ours", "beside", "ratio", "at most");
    }
    const std::vector<std::string> words = columns(row);
    std::printf("%-34s %14s   %-24s %8s %8s  %s\n", words[0].c_str(), words[1].c_str(), words[2].c_str(),
                words[3].c_str(), words[4].c_str(), words[5].c_str());
    std::fflush(stdout);
    _rows.push_back(row);
}

void Report::setMachine(const std::vector<std::pair<std::string, std::string>>& machine) {
    _machine = machine;
    for (const auto& [name, value] : _machine) std::printf("%s: %s\n", name.c_str(), value.c_str());
    std::fflush(stdout);
}

void Report::writeJson(const std::string& path) const {
    nlohmann::ordered_json all;
    for (const auto& [name, value] : _machine) all["machine"][name] = value;
    all["rows"] = nlohmann::ordered_json::array();
    for (const Row& row : _rows) {
        nlohmann::ordered_json line{{"table", row.table}, {"what", row.what}, {"unit", row.unit}, {"value", row.value}};
        if (!row.beside.empty()) line[row.beside] = row.besideValue;
        if (row.ratio) line["ratio"] = *row.ratio;
        if (row.atMost) line["at_most"] = *row.atMost;
        if (row.atMost) line["over"] = row.isOver();
        all["rows"].push_back(line);
    }
    std::ofstream file(path);
    file << all.dump(2) << '\n';
    if (!file) fail("can't write " + path);
}

std::string Report::tableText(const std::string& table) const {
    std::string text = "| | ours | beside | ratio | at most | |\n| --- | ---: | ---: | ---: | ---: | --- |\n";
    for (const Row& row : _rows) {
        if (row.table != table) continue;
        text += "|";
        for (const std::string& word : columns(row)) text += " " + word + (word.empty() ? "|" : " |");
        text += "\n";
    }
    return text;
}

void Report::writePage(const std::string& path) const {
    std::ostringstream old;
    old << std::ifstream(path).rdbuf();
    std::string machine = "| | |\n| --- | --- |\n";
    for (const auto& [name, value] : _machine) machine += "| " + name + " | " + value + " |\n";
    std::string page = betweenMarks(old.str(), "machine", machine);
    std::set<std::string> tables;
    for (const Row& row : _rows) tables.insert(row.table);
    for (const std::string& table : tables) page = betweenMarks(page, table, tableText(table));
    std::ofstream file(path);
    file << page;
    if (!file) fail("can't write " + path);
}

}  // namespace bench
