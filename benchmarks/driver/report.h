#pragma once

#include <optional>
#include <string>
#include <vector>

namespace bench {

/// With three significant digits.
std::string number(double value);

double median(std::vector<double> values);

/// One line of the table: a number of ours, maybe beside another's, maybe with what it must not exceed.
struct Row {
    std::string table;  // the heading above it
    std::string what;
    double value = 0;
    std::string unit{};
    std::string beside{};  // whose the other number is; empty for none
    double besideValue = 0;
    std::optional<double> ratio{};   // median over the rounds
    std::optional<double> atMost{};  // of the ratio; where there is none, of the value

    double judged() const { return ratio.value_or(value); }
    bool isOver() const { return atMost && judged() > *atMost; }
};

/// All that has been measured so far, in its order.
class Report {
public:
    /// Keeps the line, and prints it.
    void add(const Row& row);
    /// What describes the machine; the first line of the table.
    void setMachine(const std::vector<std::pair<std::string, std::string>>& machine);

    const std::vector<Row>& rows() const { return _rows; }
    void writeJson(const std::string& path) const;
    /// Puts the tables and the machine between their marks into docs/performance.md. All of them: a page holds one run.
    void writePage(const std::string& path) const;

private:
    std::string tableText(const std::string& table) const;

    std::vector<std::pair<std::string, std::string>> _machine;
    std::vector<Row> _rows;
};

}  // namespace bench
