// Pictures of the tables, drawn by gnuplot.

#include <cstdio>
#include <iomanip>
#include <map>
#include <sstream>

#include "driver/groups.h"

namespace bench {

namespace {

// For single quotes of gnuplot, in which a quote is doubled.
std::string quoted(const std::string& text) {
    std::string words;
    for (const char c : text) words += c == '\'' ? "''" : std::string(1, c);
    return words;
}

// A gnuplot that draws into a file.
class Plot {
public:
    Plot(const std::string& path, int width, int height) : _to(popen("gnuplot", "w")) {
        if (!_to) fail("no gnuplot");
        say("set terminal pngcairo size " + std::to_string(width) + "," + std::to_string(height) +
            " font 'DejaVu Sans,10'");
        say("set output '" + quoted(path) + "'");
        say("set style fill solid 0.8 noborder; set boxwidth 0.9; set border 3; set tics nomirror; set grid ytics lc "
            "rgb '#dddddd'; set key top left; set yrange [0:*]");
    }
    ~Plot() { pclose(_to); }
    Plot(const Plot&) = delete;
    Plot& operator=(const Plot&) = delete;

    void say(const std::string& line) { std::fprintf(_to, "%s\n", line.c_str()); }

    // A table of the report as a data block: what it measures, then ours and all others, one column each.
    void data(const std::string& block, const Report& report, const std::string& table, const std::string& unit) {
        std::vector<std::string> names;
        std::vector<std::string> others;
        std::map<std::string, std::map<std::string, double>> values;
        for (const Row& row : report.rows()) {
            if (row.table != table || row.unit != unit) continue;
            if (names.empty() || names.back() != row.what) names.push_back(row.what);
            if (!values["others"].count(row.beside)) others.push_back(row.beside);
            values["others"][row.beside] = 1;
            values[row.what]["ours"] = row.value;
            values[row.what][row.beside] = row.besideValue;
        }
        say("$" + block + " << END");
        std::ostringstream lines;
        lines << "what zetdisplay";
        for (const std::string& other : others) lines << ' ' << std::quoted(other);
        for (const std::string& name : names) {
            lines << '\n' << std::quoted(name) << ' ' << values[name]["ours"];
            for (const std::string& other : others) {
                if (values[name].count(other)) {
                    lines << ' ' << values[name][other];
                } else {
                    lines << " ?";
                }
            }
        }
        say(lines.str());
        say("END");
        _columns = others.size() + 2;
    }
    void bars(const std::string& block) {
        say("set style data histogram; set style histogram clustered gap 1");
        say("plot for [i=2:" + std::to_string(_columns) + "] $" + block + " using i:xtic(1) title columnheader(i)");
    }
    void lines(const std::string& block, std::size_t columns) {
        say("plot for [i=2:" + std::to_string(columns) + "] $" + block +
            " using 0:i:xtic(1) with linespoints lw 2 pt 7 title columnheader(i)");
    }

private:
    std::FILE* _to;
    std::size_t _columns = 0;
};

bool has(const Report& report, const std::string& table) {
    for (const Row& row : report.rows()) {
        if (row.table == table) return true;
    }
    return false;
}

}  // namespace

void writePlots(const Report& report, const std::string& folder) {
    if (has(report, "views")) {
        Plot plot(folder + "/performance-views.png", 1000, 380);
        plot.data("views", report, "views", "ms");
        plot.say("set ylabel 'CPU ms a frame'; set title 'Views'");
        plot.bars("views");
    }
    if (has(report, "players")) {
        Plot plot(folder + "/performance-players.png", 600, 380);
        plot.data("players", report, "players", "ms");
        plot.say("set ylabel 'CPU ms a frame'; set title 'Players'");
        plot.bars("players");
    }
    if (has(report, "frames")) {
        Plot plot(folder + "/performance-growth.png", 1000, 640);
        plot.say(
            "set multiplot layout 2,2; set ylabel 'CPU ms a frame'; set offsets 0.2,0.2,0,0; set key bottom right; set "
            "xtics font ',8'");
        for (const auto& [table, title, columns] : {std::tuple{"frames", "Size of the frames", 3},
                                                    {"windows", "Size of the window", 3},
                                                    {"displays", "Displays in one process, for each", 2},
                                                    {"faces", "Faces on a frame", 2}}) {
            plot.data(table, report, table, "ms");
            plot.say(std::string("set title '") + title + "'");
            plot.lines(table, static_cast<std::size_t>(columns));
        }
        plot.say("unset multiplot");
    }
}

}  // namespace bench
