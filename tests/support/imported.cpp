#include "tests/support/imported.h"

#include <algorithm>

#include "base/report.h"
#include "tests/support/model_files.h"
#include "tests/support/temporary_folder.h"

namespace vex {

bool ImportedFile::says(Report::Kind kind, const std::string& text) const {
  return std::any_of(report.lines.begin(), report.lines.end(), [&](const Report::Line& line) {
    return line.kind == kind && line.text.find(text) != std::string::npos;
  });
}

void importFile(const std::string& path, const ImportOptions& options, ImportedFile& file) {
  const FatalErrorsThrown thrown;
  file.source = readSource(path, file.report);
  Imported imported = importScene(file.source, options, file.report);
  file.model = std::move(imported.model);
  file.textures = std::move(imported.textures);
  writeFile("imported.ase", writeModelText(file.model, NumberForm::exact));
  readModel({"imported.ase"}, &file.scene, nameTextures(file.textureNames));
  for (Mesh* mesh : file.scene.meshes) {
    for (int type = 0; type < trackTypes; ++type) {
      if (const Animation* track = mesh->track(static_cast<TrackType>(type)))
        mesh->setAnimParams(track->frameLength / static_cast<float>(options.framesPerSecond), false);
    }
  }
  const float seconds =
      static_cast<float>(file.model.lastFrame) / static_cast<float>(options.framesPerSecond);
  for (Light* light : file.scene.lights) light->setAnimParams(seconds, false);
  for (Viewer* viewer : file.scene.viewers) viewer->setAnimParams(seconds, false);
}

}  // namespace vex
