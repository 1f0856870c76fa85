#pragma once

#include <string>
#include <string_view>

namespace vex {

// The text of a model, line by line. Blocks nest by open() and close().
//
//   AseText().comment("1").open("*GEOMOBJECT").line("*NODE_NAME \"Box\"").box().close()
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
    return line("*TM_SCALE 1 1 1").close();
  }

  // A tetrahedron with corners 0 and the unit points of the axes.
  AseText& tetrahedron() {
    open("*MESH").line("*TIMEVALUE 0").line("*MESH_NUMVERTEX 4").line("*MESH_NUMFACES 4");
    open("*MESH_VERTEX_LIST");
    line("*MESH_VERTEX    0\t0.0000\t0.0000\t0.0000").line("*MESH_VERTEX    1\t1.0000\t0.0000\t0.0000");
    line("*MESH_VERTEX    2\t0.0000\t1.0000\t0.0000").line("*MESH_VERTEX    3\t0.0000\t0.0000\t1.0000");
    close().open("*MESH_FACE_LIST");
    face("0:", "A: 0 B: 2 C: 1").face("1:", "A: 0 B: 1 C: 3");
    face("2:", "A: 0 B: 3 C: 2").face("3:", "A: 1 B: 2 C: 3");
    return close().close();
  }
  AseText& face(std::string_view index, std::string_view corners) {
    return line("*MESH_FACE    " + std::string(index) + "  " + std::string(corners) +
                " AB: 1 BC: 1 CA: 0\t *MESH_SMOOTHING 1 \t*MESH_MTLID 0");
  }

  const std::string& str() const { return text; }

 private:
  std::string text;
  std::size_t depth = 0;
};

}  // namespace vex
