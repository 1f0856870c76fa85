#include "tools/exchange/report.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <utility>

namespace vex {

namespace {

constexpr std::pair<Report::Kind, const char*> kinds[]{
    {Report::Kind::came, "came"}, {Report::Kind::changed, "changed"}, {Report::Kind::left, "left"}};

const char* nameOf(Report::Kind kind) {
  for (const auto& [known, name] : kinds)
    if (known == kind) return name;
  return "";
}

}  // namespace

std::string reportAsText(const Report& report) {
  std::string text;
  for (const Report::Line& line : report.lines) {
    std::string kind = nameOf(line.kind);
    kind.resize(8, ' ');
    text += kind + line.text + "\n";
  }
  return text;
}

std::string reportAsJson(const Report& report) {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  writer.StartObject();
  for (const auto& [kind, name] : kinds) {
    writer.Key(name);
    writer.StartArray();
    for (const Report::Line& line : report.lines)
      if (line.kind == kind) writer.String(line.text.c_str());
    writer.EndArray();
  }
  writer.EndObject();
  return buffer.GetString() + std::string("\n");
}

}  // namespace vex
