// The longest time between two checks for a stop in a run: a window repaints, and its Cancel works, only at
// these.
//   korvana-response-time FILE     (columns time and status with codes 1 and 0, as korvana-make-data writes
//   korvana-response-time FILE     (columns time and status with codes 1 and 0, of korvana-make-data)

#include "host/data/ReadData.h"
#include "host/session/Session.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <string>
#include <utility>
#include <vector>

using namespace korvana;

namespace {

using Clock = std::chrono::steady_clock;

double seconds(Clock::duration time) {
    return std::chrono::duration<double>(time).count();
}

/// Asks for the next call at each call, and measures the time between them.
class Gaps final : public SessionObserver {
public:
    explicit Gaps(StopSignals& stops) : stops_(stops) { stops_.askForEvents(); }

    void status(std::string_view text) override {
        look();
        phases_.push_back({std::string{text}, Clock::now(), {}});
    }
    void processEvents() override {
        look();
        stops_.askForEvents();
    }
    void print() {
        look();
        for (std::size_t i = 0; i < phases_.size(); ++i) {
            const auto end = i + 1 < phases_.size() ? phases_[i + 1].began : last_;
            std::printf("%-50s %7.3f s, longest gap %.3f s\n",
                        phases_[i].text.empty() ? "-" : phases_[i].text.c_str(),
                        seconds(end - phases_[i].began), seconds(phases_[i].longest));
        }
    }

private:
    struct Phase {
        std::string text;
        Clock::time_point began;
        Clock::duration longest;
    };

    void look() {
        const auto now = Clock::now();
        if (!phases_.empty()) phases_.back().longest = std::max(phases_.back().longest, now - last_);
        last_ = now;
    }

    StopSignals& stops_;
    std::vector<Phase> phases_;
    Clock::time_point last_ = Clock::now();
};

void call(Session& session, const char* member) {
    const auto result = session.currentDialog()->Call(member);
    if (!result.ok) throw std::runtime_error(result.error + ": " + result.detail);
    session.pump();
}

} // namespace

int main(int argc, char* argv[]) {
    try {
        if (argc != 2) throw std::runtime_error("usage: korvana-response-time FILE");
        StopSignals stops;
        Gaps gaps(stops);
        Session session(loadAnalysis(findModules()), {.stops = &stops});
        session.addObserver(gaps);
        session.openData(readData(argv[1]));
        session.start();
        using List = ozm::AutomationValue::List;
        session.currentDialog()->Put("TypeOfAnalysis", 2);
        call(session, "OK");
        session.currentDialog()->Put("Variables", List{List{"time"}, List{"status"}});
        session.currentDialog()->Put("CodeForCompleteResponses", 1);
        session.currentDialog()->Put("CodeForCensoredResponses", 0);
        call(session, "OK");
        for (const char* output :
             {"PlotOfSurvivalTimesVsCumProportionSurviving", "PercentilesOfSurvivalFunction", "Summary"})
            call(session, output);
        gaps.print();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "korvana-response-time: %s\n", error.what());
        return 1;
    }
}
