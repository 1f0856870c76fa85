#include "production/making/maker.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <regex>

#include "app/recorder.h"
#include "base/report.h"
#include "production/products.h"
#include "production/song/cues.h"
#include "tests/support/draft.h"
#include "tests/support/fatal.h"
#include "tests/support/temporary_folder.h"

namespace vex {

using namespace image;
using namespace song;

namespace {

std::map<std::string, int> timesMade;

Product textProduct(const std::string& path, const std::string& text, const std::string& source) {
  Product product;
  product.outputs = {path};
  product.source = source;
  product.make = [path, text](const Settings& settings) {
    ++timesMade[path];
    const std::string all = text + (settings.draft ? " draft" : "");
    const auto* bytes = reinterpret_cast<const std::byte*>(all.data());
    return std::vector<Bytes>{Bytes(bytes, bytes + all.size())};
  };
  return product;
}

MakeResult make(const Products& products, bool draft = false, int workers = 1) {
  timesMade.clear();
  return makeProducts(products, "out", Settings{draft}, ProgressStyle::none, workers);
}

Products twoProducts() {
  return {textProduct("data/a.txt", "first", "production/making/maker.cpp"),
          textProduct("b.txt", "second", "production/making/manifest.cpp")};
}

// Every file in "out" is one that the generator remembers as finished.
void expectOnlyWholeFiles() {
  const std::string manifest = readFile("out/.vexproduce");
  for (const auto& entry : std::filesystem::recursive_directory_iterator("out")) {
    const std::string name = entry.path().lexically_relative("out").native();
    if (entry.is_regular_file() && name != ".vexproduce") {
      EXPECT_NE(manifest.find(name + " "), std::string::npos) << name;
    }
  }
}

}  // namespace

TEST(Maker, MakesWhatIsMissingOrChangedAndNothingElse) {
  const TemporaryFolder folder;
  EXPECT_EQ(make(twoProducts()).made, 2);
  EXPECT_EQ(readFile("out/data/a.txt"), "first");
  EXPECT_EQ(readFile("out/b.txt"), "second");

  MakeResult result = make(twoProducts());
  EXPECT_EQ(result.made, 0);
  EXPECT_EQ(result.kept, 2);

  struct Case {
    const char* what;
    void (*disturb)();
  };
  const Case cases[] = {
      {"missing", [] { std::filesystem::remove("out/b.txt"); }},
      {"other size", [] { writeFile("out/b.txt", "longer than it was"); }},
      {"same size, other time",
       [] {
         writeFile("out/b.txt", "SECOND");
         std::filesystem::last_write_time(
             "out/b.txt", std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
       }},
  };
  for (const Case& one : cases) {
    one.disturb();
    EXPECT_EQ(make(twoProducts()).made, 1) << one.what;
    EXPECT_EQ(timesMade["b.txt"], 1) << one.what;
    EXPECT_EQ(readFile("out/b.txt"), "second") << one.what;
  }
}

TEST(Maker, OtherSourcesOrSettingsMakeAnew) {
  const TemporaryFolder folder;
  make(twoProducts());
  Products products = twoProducts();
  products[0].source = "production/making/product.cpp";
  EXPECT_EQ(make(products).made, 1);
  EXPECT_EQ(timesMade["data/a.txt"], 1);
  EXPECT_EQ(make(products, true).made, 2);
  EXPECT_EQ(readFile("out/b.txt"), "second draft");
}

TEST(Maker, AFullDiskLeavesNothingHalfWritten) {
  const TemporaryFolder folder;
  const Program program = runProgram("ulimit -f 40; " VEX_BIN "/vexproduce out --draft");
  EXPECT_EQ(program.exitCode, 255);
  EXPECT_TRUE(
      std::regex_match(program.errors, std::regex("vexproduce: cannot write out/.*: File too large\n")))
      << program.errors;
  expectOnlyWholeFiles();
}

TEST(Maker, RemovesFilesOfForgottenProductsButNoOthers) {
  const TemporaryFolder folder;
  make(twoProducts());
  writeFile("out/data/mine.txt", "a guest's own");
  writeFile("precious.txt", "outside");
  const std::string manifest = readFile("out/.vexproduce");
  writeFile("out/.vexproduce", manifest + "../precious.txt x 7 7\n/tmp x 1 1\nnonsense\n");
  Products one = twoProducts();
  one.erase(one.begin());
  const MakeResult result = make(one);
  EXPECT_EQ(result.removed, 1);
  EXPECT_EQ(result.made, 0);
  EXPECT_FALSE(std::filesystem::exists("out/data/a.txt"));
  EXPECT_EQ(readFile("out/data/mine.txt"), "a guest's own");
  EXPECT_EQ(readFile("precious.txt"), "outside");
}

TEST(Maker, AnInterruptKeepsWhatIsWhole) {
  const TemporaryFolder folder;
  const Program program = runProgram(
      VEX_BIN
      "/vexproduce out --draft >/dev/null & id=$!; while [ ! -s out/.vexproduce ] && kill -0 $id; do sleep "
      "0.05; done; "
      "date +%s%N; kill -TERM $id; wait $id; code=$?; date +%s%N; exit $code");  // behind & SIGINT is ignored
  EXPECT_EQ(program.exitCode, 130);
  long long asked = 0, ended = 0;
  ASSERT_EQ(std::sscanf(program.output.c_str(), "%lld %lld", &asked, &ended), 2) << program.output;
  EXPECT_LT(ended - asked, 2'000'000'000) << "ns";
  EXPECT_EQ(program.errors, "vexproduce: interrupted\n");
  expectOnlyWholeFiles();
}

TEST(Maker, SaysWhatItCannotWrite) {
  const TemporaryFolder folder;
  writeFile("out", "a file where the folder should be");
  EXPECT_EQ(fatalText([] { make(twoProducts()); }), "cannot make folder out: Not a directory");
  std::filesystem::remove("out");
  std::filesystem::create_directories("out/b.txt/inside");
  const auto makeTwo = [] {
    Product slow = textProduct("a.txt", "x", "production/making/maker.cpp");
    slow.work = 100;
    slow.make = [](const Settings&) -> std::vector<Bytes> { fatalError("the work has begun"); };
    make({slow, textProduct("b.txt", "x", "production/making/maker.cpp")});
  };
  EXPECT_EQ(fatalText(makeTwo), "cannot write out/b.txt: Is a directory");
  EXPECT_EQ(runProgram(VEX_BIN "/vexproduce --cues >/dev/full").errors,
            "vexproduce: can't write standard output: No space left on device\n");
}

// By one worker as by the two of the draft. Everything but the music, which has its own test, and most of the
// movie, for time.
TEST(Maker, TheProductionIsTheSameOnEveryRunWithAnyNumberOfWorkers) {
  const TemporaryFolder folder;
  Products products = allProducts();
  std::erase_if(products, [](const Product& product) {
    const std::string& path = product.outputs.front();
    return path.ends_with(".ogg") || (path.starts_with("data/eye") && path != "data/eye20.jpg");
  });
  makeProducts(products, "one", Settings{true}, ProgressStyle::none, 1);
  const std::filesystem::path draft = sharedDraft();
  for (const Product& product : products)
    for (const std::string& path : product.outputs)
      EXPECT_TRUE(readFile("one/" + path) == readFile(draft / path)) << path;
  EXPECT_EQ(makeProducts(products, "one", Settings{true}, ProgressStyle::none).made, 0);
}

// The recorder takes them as they are.
TEST(VexProduce, PrintsTheCues) {
  const TemporaryFolder folder;
  const Program run = runProgram(std::string(VEX_BIN) + "/vexproduce --cues > cues.txt");
  EXPECT_EQ(run.exitCode, 0);
  const std::vector<Still> stills = readCues("cues.txt");
  ASSERT_EQ(stills.size(), cues.size());
  for (std::size_t i = 0; i < cues.size(); ++i) {
    EXPECT_EQ(stills[i].time, cueSeconds(cues[i]));
    EXPECT_NE(stills[i].name.find(cues[i].name), std::string::npos) << stills[i].name;
  }
}

TEST(VexProduce, AnswersWrongUsageAndHelp) {
  const TemporaryFolder folder;
  const std::string program = std::string(VEX_BIN) + "/vexproduce";
  const struct {
    const char* arguments;
    int exitCode;
  } cases[] = {{"--help", 0}, {"", 2},           {"--what", 2},    {"a b", 2},
               {"''", 2},     {"out --fast", 2}, {"out --cues", 2}};
  for (const auto& [arguments, exitCode] : cases) {
    const Program run = runProgram(program + " " + arguments);
    EXPECT_EQ(run.exitCode, exitCode) << arguments;
    EXPECT_TRUE((exitCode == 0 ? run.output : run.errors).starts_with("usage: vexproduce OUTDIR"))
        << arguments;
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
  const Program refused = runProgram(program + " /proc/none");
  EXPECT_EQ(refused.exitCode, 255);
  EXPECT_TRUE(refused.errors.starts_with("vexproduce: cannot make folder /proc/none: ")) << refused.errors;
}

}  // namespace vex
