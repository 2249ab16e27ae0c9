// `vexel check`: what is wrong with a movie, or not needed in it.
#include <cstdio>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>

#include "author/check/check.h"
#include "movie/budget.h"
#include "movie/tags.h"
#include "options.h"
#include "status.h"
#include "verbs.h"

namespace vexel::tools {

namespace {

using author::CheckResult;
using author::Finding;
using author::FindingKind;

// The whole file, longer than it declares or not, but no more than a movie can
// have.
std::vector<uint8_t> ReadMovie(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw Failure(kFailed, path, "cannot be opened: " + SystemError());
  std::vector<uint8_t> bytes;
  constexpr size_t kPiece = 1 << 20;
  while (file && bytes.size() <= kMaxMovieBytes) {
    const size_t at = bytes.size();
    bytes.resize(at + kPiece);
    file.read(reinterpret_cast<char*>(bytes.data() + at), kPiece);
    bytes.resize(at + static_cast<size_t>(file.gcount()));
  }
  if (file.bad()) throw Failure(kFailed, path, SystemError());
  if (bytes.size() > kMaxMovieBytes)
    throw Failure(kFailed, path,
                  "is longer than " + std::to_string(kMaxMovieBytes) + " bytes, which no movie is");
  return bytes;
}

// "-" for what is in no tag.
std::string TagText(const Finding& finding) {
  if (finding.code < 0) return "-";
  const char* name = TagName(finding.code);
  return name ? name : "Unknown";
}

void PrintText(const CheckResult& result) {
  for (const Finding& finding : result.findings) {
    std::printf("%s %zu %s: %s\n", FindingKindName(finding.kind), finding.offset,
                TagText(finding).c_str(), finding.reason.c_str());
  }
  for (size_t i = 0; i < author::kFindingKinds; ++i) {
    const auto kind = static_cast<FindingKind>(i);
    std::printf("%s: %zu\n", FindingKindName(kind), result.Count(kind));
  }
}

void PrintJson(const CheckResult& result) {
  nlohmann::ordered_json all;
  for (size_t i = 0; i < author::kFindingKinds; ++i) {
    const auto kind = static_cast<FindingKind>(i);
    all[FindingKindName(kind)] = result.Count(kind);
  }
  all["findings"] = nlohmann::ordered_json::array();
  for (const Finding& finding : result.findings) {
    nlohmann::ordered_json one = {{"kind", FindingKindName(finding.kind)},
                                  {"offset", finding.offset}};
    if (finding.code >= 0) one.update({{"code", finding.code}, {"tag", TagText(finding)}});
    one["reason"] = finding.reason;
    all["findings"].push_back(std::move(one));
  }
  std::printf("%s\n", all.dump().c_str());
}

void Check(const std::string& path, bool json) {
  const CheckResult result = author::CheckMovie(ReadMovie(path));
  if (json) {
    PrintJson(result);
  } else {
    PrintText(result);
  }
  if (result.Count(FindingKind::kDamaged) > 0) throw Failure(kFailed, path, "is damaged");
}

}  // namespace

void AddCheckVerb(CLI::App* app) {
  const auto path = std::make_shared<std::string>();
  const auto json = std::make_shared<bool>(false);
  CLI::App* verb = AddVerb(app, "check", "tell what is wrong with a movie, or not needed in it");
  AddMovieArgument(verb, path.get());
  AddFlag(verb, "--json", json.get(), "print one object of JSON");
  SetFooter(verb,
            "Each line says what a thing is (damaged, unknown, unsupported, unreachable or\n"
            "wasteful), at which byte, in which tag, and why. The status is 1 if anything is\n"
            "damaged.\n\n"
            "Example: vexel check clock.vxf");
  SetRun(verb, [=] { Check(*path, *json); });
}

}  // namespace vexel::tools
