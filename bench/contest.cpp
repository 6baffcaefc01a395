#include "bench/contest.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace cvl::bench {

namespace {

constexpr int UsualRounds = 13;
constexpr int MostRounds = 40;

/// What the rounds have shown of one contender.
struct Figures {
  std::vector<double> PerSecond;
  std::vector<double> NsPerAnswer;
  std::vector<double> Busy;  // share of its core that the server used
  LoadResult Total;
};

double MedianOf(std::vector<double> values) {
  if (values.empty()) return 0;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// The median of what the rounds gave, ours divided by another's in the same round.
double RatioOf(const std::vector<double> &ours, const std::vector<double> &other) {
  std::vector<double> ratios;
  for (std::size_t round = 0; round < ours.size(); ++round) {
    ratios.push_back(ours[round] / other[round]);
  }
  return MedianOf(std::move(ratios));
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
    std::printf("  %s / %s: answers/s %.2f, processor time per answer %.2f\n",
                contenders[0]->Name.c_str(), contenders[at]->Name.c_str(),
                RatioOf(figures[0].PerSecond, figures[at].PerSecond),
                RatioOf(figures[0].NsPerAnswer, figures[at].NsPerAnswer));
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
  for (int round = 0; round < rounds; ++round) {
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
