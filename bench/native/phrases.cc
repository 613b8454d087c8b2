// Measures understanding viewers' phrases in each language, alternately with looking up the same text in a
// hash table, and loading each language. Prints nanoseconds as JSON:
//   bench_phrases FOLDER ROUNDS
#include "language/phrasebook.h"

#include <cstdlib>
#include <fstream>
#include <string>
#include <unordered_map>
#include <vector>

#include "native/numbers.h"

namespace {

using corvis::kit::Phrasebook;

volatile size_t sink = 0;

template <typename Action>
double Nanoseconds(int times, Action&& action) {
  const double start = bench::Microseconds(CLOCK_MONOTONIC);
  for (int i = 0; i < times; ++i) action();
  constexpr double kThousand = 1000;
  return (bench::Microseconds(CLOCK_MONOTONIC) - start) * kThousand / times;
}

std::vector<std::string> ReadTexts(const std::string& path) {
  std::vector<std::string> texts;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    const size_t arrow = line.find(" -> ");
    if (arrow != std::string::npos && line[0] != '#') texts.push_back(line.substr(0, arrow));
  }
  return texts;
}

struct Samples {
  std::vector<double> ours;
  std::vector<double> against;
  std::vector<double> load;
};

Samples Measure(const std::string& tag, const std::vector<std::string>& texts, int rounds) {
  Samples samples;
  Phrasebook book = Phrasebook::English();
  std::unordered_map<std::string, std::string> table;
  for (const std::string& text : texts) table[text] = "ACTION_PLAY";
  for (int round = 0; round < rounds; ++round) {
    samples.load.push_back(Nanoseconds(1, [&] { book = Phrasebook::Open(tag, {}).value(); }));
    for (const std::string& text : texts) {
      samples.ours.push_back(Nanoseconds(1, [&] { sink = sink + (book.Understand(text) ? 1 : 0); }));
      constexpr int kLookups = 100;
      samples.against.push_back(
          Nanoseconds(kLookups, [&] { sink = sink + table.find(text)->second.size(); }));
    }
  }
  return samples;
}

}  // namespace

int main(int count, char** arguments) {
  const int rounds = count == 3 ? std::atoi(arguments[2]) : 0;
  if (rounds <= 0) {
    std::fputs("Usage: bench_phrases FOLDER ROUNDS\n", stderr);
    return 2;
  }
  std::printf("{");
  const char* separator = "";
  for (const std::string& tag : corvis::kit::BuiltInLanguages()) {
    const Samples samples = Measure(tag, ReadTexts(std::string(arguments[1]) + "/" + tag + ".txt"), rounds);
    std::printf("%s\"%s\":", std::exchange(separator, ","), tag.c_str());
    bench::PrintJson({{"ours", samples.ours}, {"against", samples.against}, {"load", samples.load}});
  }
  std::printf("}\n");
  return 0;
}
