#include "bench/contest.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace cvl::bench {

namespace {

constexpr int UsualRounds = 13;
constexpr int MostRounds = 40;

// A median stands still when it is known within so much of itself.
constexpr double Still = 0.02;

/// What the rounds have shown of one contender.
struct Figures {
  std::vector<double> PerSecond;
  std::vector<double> NsPerAnswer;
  std::vector<double> Busy;  // share of its core that the server used
  LoadResult Total;
};

/// A median and how well the rounds determine it.
struct Estimate {
  double Median = 0;
  double Margin = 0;  ///< half the width of its 95 % interval, as a part of the median
};

/// The interval is that of notched box plots: 1.57 times the distance of the quartiles, divided
/// by the root of the number of values.
Estimate EstimateOf(std::vector<double> values) {
  if (values.empty()) return {};
  std::sort(values.begin(), values.end());
  const auto quartile = [&values](std::size_t quarters) {
    return values[((values.size() - 1) * quarters + 2) / 4];
  };
  const double median = quartile(2);
  const double half_width =
      1.57 * (quartile(3) - quartile(1)) / std::sqrt(static_cast<double>(values.size()));
  return {median, half_width / median};
}

double MedianOf(std::vector<double> values) {
  return EstimateOf(std::move(values)).Median;
}

/// Of what the rounds gave, ours divided by another's in the same round.
Estimate RatioOf(const std::vector<double> &ours, const std::vector<double> &other) {
  std::vector<double> ratios;
  for (std::size_t round = 0; round < ours.size(); ++round) {
    ratios.push_back(ours[round] / other[round]);
  }
  return EstimateOf(std::move(ratios));
}

/// Whether the ratios of answers a second are known well enough.
bool StandStill(const std::vector<Figures> &figures) {
  return std::all_of(figures.begin() + 1, figures.end(), [&figures](const Figures &other) {
    return RatioOf(figures[0].PerSecond, other.PerSecond).Margin <= Still;
  });
}

void Round(Contender &contender, std::size_t depth, Figures &figures) {
  const std::int64_t used_before = contender.ProcessorNs();
  const LoadResult result = contender.Load(depth);
  const auto used = static_cast<double>(contender.ProcessorNs() - used_before);
  const auto elapsed = static_cast<double>(result.ElapsedNs);
  const auto served = static_cast<double>(std::max<std::int64_t>(1, result.Answers + result.Late));
  figures.PerSecond.push_back(static_cast<double>(result.Answers) * 1e9 / elapsed);
  figures.NsPerAnswer.push_back(used / served);
  figures.Busy.push_back(used / elapsed);
  figures.Total.Answers += result.Answers;
  figures.Total.Lost += result.Lost;
  figures.Total.Late += result.Late;
  figures.Total.Wrong += result.Wrong;
}

void Print(std::size_t depth, const Contenders &contenders, const std::vector<Figures> &figures) {
  std::printf("\n%zu requests outstanding\n", depth);
  std::printf("  %-16s %12s %12s %7s %10s %8s %8s %7s\n", "server", "answers/s", "ns/answer",
              "busy", "answers", "lost", "late", "wrong");
  for (std::size_t at = 0; at < contenders.size(); ++at) {
    const Figures &of = figures[at];
    std::printf("  %-16s %12.0f %12.0f %6.0f%% %10lld %8lld %8lld %7lld\n",
                contenders[at]->Name.c_str(), MedianOf(of.PerSecond), MedianOf(of.NsPerAnswer),
                100 * MedianOf(of.Busy), static_cast<long long>(of.Total.Answers),
                static_cast<long long>(of.Total.Lost), static_cast<long long>(of.Total.Late),
                static_cast<long long>(of.Total.Wrong));
  }
  for (std::size_t at = 1; at < contenders.size(); ++at) {
    const Estimate answers = RatioOf(figures[0].PerSecond, figures[at].PerSecond);
    const Estimate processor = RatioOf(figures[0].NsPerAnswer, figures[at].NsPerAnswer);
    std::printf("  %s / %s: answers/s %.2f (%.1f %%), processor time per answer %.2f (%.1f %%)\n",
                contenders[0]->Name.c_str(), contenders[at]->Name.c_str(), answers.Median,
                100 * answers.Margin, processor.Median, 100 * processor.Margin);
  }
  if (!StandStill(figures)) {
    std::printf("  After %zu rounds the medians don't stand still.\n", figures[0].PerSecond.size());
  }
  std::fflush(stdout);
}

}  // namespace

bool AllReady(const Contenders &contenders) {
  for (const auto &contender : contenders) {
    if (contender->WaitUntilReady()) continue;
    std::fprintf(stderr, "no answer from %s\n", contender->Name.c_str());
    return false;
  }
  return true;
}

void Compete(const Contenders &contenders, std::size_t depth, int rounds) {
  std::vector<Figures> figures(contenders.size());
  for (int round = 0; round < rounds || (round < MostRounds && !StandStill(figures)); ++round) {
    for (std::size_t at = 0; at < contenders.size(); ++at) {
      Round(*contenders[at], depth, figures[at]);
    }
  }
  Print(depth, contenders, figures);
}

int RoundsOf(int count, char **arguments) {
  const int asked = count > 1 ? std::atoi(arguments[1]) : UsualRounds;
  return std::clamp(asked, 1, MostRounds);
}

}  // namespace cvl::bench
