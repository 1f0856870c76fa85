#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace vex {

// The text of a model, line by line. Blocks nest by open() and close().
//
//   AseText().head("1").object("*GEOMOBJECT", "Roof").node("0 0 3").triangle().close().str()
class AseText {
 public:
  AseText& line(std::string_view content) {
    text.append(depth, '\t').append(content).append("\r\n");
    return *this;
  }
  AseText& open(std::string_view keyword) {
    line(std::string(keyword) + " {");
    ++depth;
    return *this;
  }
  AseText& close() {
    --depth;
    return line("}");
  }

  // First and second line of every file.
  AseText& head(std::string_view comment) {
    return line("*3DSMAX_ASCIIEXPORT\t200").line("*COMMENT \"" + std::string(comment) + "\"");
  }
  AseText& scene(int framesPerSecond = 30, int ticksPerFrame = 160, int lastFrame = 100) {
    open("*SCENE").line("*SCENE_FIRSTFRAME 0").line("*SCENE_LASTFRAME " + std::to_string(lastFrame));
    line("*SCENE_FRAMESPEED " + std::to_string(framesPerSecond));
    return line("*SCENE_TICKSPERFRAME " + std::to_string(ticksPerFrame)).close();
  }

  // An object with a name; close() ends it.
  AseText& object(std::string_view keyword, std::string_view name) { return open(keyword).name(name); }
  AseText& name(std::string_view name) { return line("*NODE_NAME \"" + std::string(name) + "\""); }
  AseText& parent(std::string_view name) { return line("*NODE_PARENT \"" + std::string(name) + "\""); }

  // An identity node at a pivot in the text's axes.
  AseText& node(std::string_view pivot) {
    open("*NODE_TM").line("*TM_ROW0 1 0 0").line("*TM_ROW1 0 1 0").line("*TM_ROW2 0 0 1");
    line("*TM_ROW3 " + std::string(pivot)).line("*TM_POS " + std::string(pivot));
    return line("*TM_SCALE 1.0000 1.0000 1.0000").close();
  }

  // A block with a line of each content: list("*MESH_VERTEX_LIST", "*MESH_VERTEX", {"0 1 2 3", ...}).
  AseText& list(std::string_view block, std::string_view keyword,
                std::initializer_list<std::string_view> contents) {
    open(block);
    for (const std::string_view content : contents) line(std::string(keyword) + "\t" + std::string(content));
    return close();
  }

  // A mesh without texture faces: the right triangle (0,0,0), (2,0,0), (0,2,0), seen from above.
  AseText& triangle() {
    open("*MESH").line("*TIMEVALUE 0").line("*MESH_NUMVERTEX 3").line("*MESH_NUMFACES 1");
    list("*MESH_VERTEX_LIST", "*MESH_VERTEX", {"0 0 0 0", "1 2.0000 0 0", "2 0 2.0000 0"});
    return list("*MESH_FACE_LIST", "*MESH_FACE", {"0: A: 0 B: 1 C: 2 AB: 1 BC: 1 CA: 0"}).close();
  }

  const std::string& str() const { return text; }

 private:
  std::string text;
  std::size_t depth = 0;
};

}  // namespace vex
