// How the cost of a pane grows with the panes that are there: fills an ORV database with generated
// panes of 420 wavelengths up to each size, and measures there single panes, each commit durable.
//
// usage: copy_bench PANES...     (ascending; 1000 unless told otherwise)
//
// Prints a line for each figure, separated by tabs: panes there, what was done, milliseconds a pane
// (of the check: for all of them), and at last the size of the file a pane.

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "database/ORV_DatabaseInterface.h"
#include "database/OrvSchema.h"
#include "store/Check.h"

namespace {

using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

class NoQuestions : public orv::database::PaneQuestions {
 public:
  bool confirm(const std::string&, const std::string&) override { return false; }
};

std::shared_ptr<orv::GlazingData> makePane(int number) {
  constexpr int kWavelengths = 420;
  auto spectrum = std::make_shared<orv::SpectralData>();
  spectrum->Allocate(kWavelengths - 1);
  spectrum->WavelengthUnit(1);
  for (int i = 0; i < kWavelengths; ++i) {
    const auto transmittance = static_cast<float>(0.5 + 0.4 * std::sin(0.01 * (i + number)));
    spectrum->wl(i, 300.0f + 5.0f * static_cast<float>(i));
    spectrum->Tf(i, transmittance);
    spectrum->Tb(i, transmittance);
    spectrum->Rf(i, 0.05f);
    spectrum->Rb(i, 0.06f);
  }
  auto pane = std::make_shared<orv::GlazingData>();
  pane->filename(fmt::format("bench{:06}.txt", number));
  pane->productname(fmt::format("Pane {}", number));
  pane->supplier(fmt::format("Maker {}", number % 20));
  pane->group("Benchmark");
  pane->Thickness(4);
  pane->Conductivity(1);
  pane->spectral_pane(true);
  pane->WavelengthUnit(1);
  pane->SpectralData(spectrum);
  return pane;
}

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void report(int panes, const char* what, double milliseconds) {
  fmt::print("{}\t{}\t{:.3f}\n", panes, what, milliseconds);
  std::fflush(stdout);
}

class GrowingDatabase {
 public:
  explicit GrowingDatabase(const fs::path& folder)
      : path_((folder / "grown.mdb").string()),
        copyPath_((folder / "copied.mdb").string()),
        connection_(orv::database::CreateEmptyDatabase(path_)) {}

  /// Adds panes, many in a commit, until there are so many.
  void growTo(int panes) {
    constexpr int kInACommit = 50;
    while (count_ < panes) {
      connection_->inOneCommit([&] {
        for (int i = 0; i < kInACommit && count_ < panes; ++i) insert();
      });
    }
  }

  /// Measures each work on panes that lie evenly among those that were added since the last time.
  void measure() {
    const int panes = count_;
    report(panes, "insert", perPane([&](int) { insert(); }));
    report(panes, "look up", perPane([&](int number) { retrieve(number); }));
    {
      const auto copy = orv::database::CreateEmptyDatabase(copyPath_);
      report(panes, "copy",
             perPane([&](int number) { database_.InsertPane(*retrieve(number), *copy); }));
    }
    fs::remove(copyPath_);
    report(panes, "delete",
           perPane([&](int number) { database_.DeleteGlazing(number, *connection_); }));
    const auto start = Clock::now();
    orv::store::checkFile(path_, "");
    report(panes, "check", millisecondsSince(start));
    report(panes, "kilobytes", static_cast<double>(fs::file_size(path_)) / 1024 / panes);
    formerCount_ = count_;
  }

 private:
  static constexpr int kMeasured = 200;

  void insert() {
    ++count_;
    database_.InsertPane(*makePane(count_), *connection_);
  }
  std::shared_ptr<orv::GlazingData> retrieve(int number) {
    return database_.RetrievePaneORV_30(*connection_, number, "", "", 0, 0);
  }

  template <class Work>
  double perPane(Work work) {
    const int step = (count_ - formerCount_) / kMeasured;
    const auto start = Clock::now();
    for (int i = 0; i < kMeasured; ++i) work(formerCount_ + 1 + i * step);
    return millisecondsSince(start) / kMeasured;
  }

  std::string path_;
  std::string copyPath_;
  NoQuestions questions_;
  orv::database::ORV_DatabaseInterface database_{questions_};
  std::shared_ptr<orv::store::Connection> connection_;
  int count_ = 0;        ///< of panes ever inserted, which is the highest key
  int formerCount_ = 0;  ///< at the last measuring
};

}  // namespace

int main(int count, char** arguments) {
  std::vector<int> sizes;
  for (int i = 1; i < count; ++i) sizes.push_back(std::atoi(arguments[i]));
  if (sizes.empty()) sizes.push_back(1000);
  const fs::path folder = fs::temp_directory_path() / fmt::format("orv-copy-bench-{}", getpid());
  fs::create_directories(folder);
  {
    GrowingDatabase database(folder);
    for (const int size : sizes) {
      database.growTo(size);
      database.measure();
    }
  }
  fs::remove_all(folder);
}
