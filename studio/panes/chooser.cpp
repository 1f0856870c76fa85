#include "studio/panes/chooser.h"

#include <FL/Fl.H>
#include <FL/Fl_Double_Window.H>
#include <FL/Fl_Input.H>
#include <FL/Fl_Menu_Item.H>
#include <FL/Fl_RGB_Image.H>
#include <FL/fl_draw.H>

#include <algorithm>
#include <deque>
#include <map>
#include <memory>

#include "base/files.h"
#include "base/report.h"
#include "scenes/scene_tables.h"
#include "studio/panes/look.h"
#include "textures/bmp.h"
#include "textures/jpeg_texture.h"

namespace vex::studio {

namespace {

constexpr int side = 72;  // of a small picture

// The picture of a texture, scaled down by dropping; null where it cannot be read.
class SmallPicture {
 public:
  explicit SmallPicture(const std::string& name) {
    const FatalErrorsThrown thrown;
    Image image;
    try {
      if (name.empty()) return;
      image = fileExists(name + ".jpg") ? readJpegTexture((name + ".jpg").c_str())
                                        : readBmpTexture((name + ".bmp").c_str());
    } catch (const FatalError&) {
      return;
    }
    if (image.pixels.empty()) return;
    const int size = px(side);
    for (int row = 0; row < size; ++row) {
      for (int column = 0; column < size; ++column) {
        const std::size_t from = static_cast<std::size_t>((size - 1 - row) * image.height / size) *
                                     static_cast<std::size_t>(image.width) +
                                 static_cast<std::size_t>(column * image.width / size);
        const std::uint32_t pixel = image.pixels[from], alpha = pixel >> 24;
        for (const int shift : {0, 8, 16})
          bytes.push_back(static_cast<uchar>((pixel >> shift & 255) * alpha / 255));
      }
    }
    picture = std::make_unique<Fl_RGB_Image>(bytes.data(), size, size, 3);
  }

  Fl_RGB_Image* get() const { return picture.get(); }

 private:
  std::vector<uchar> bytes;
  std::unique_ptr<Fl_RGB_Image> picture;
};

// Cells of names; those that hold the filter's letters.
class NameGrid : public Fl_Widget {
 public:
  NameGrid(const std::vector<std::string>& all, const std::string& now,
           const std::function<std::string(const std::string&)>& texture)
      : Fl_Widget(0, 0, 1, 1), names(all), chosenName(now), pictureOf(texture) {
    filter("");
  }

  std::optional<std::string> taken;

  void filter(const std::string& letters) {
    shown.clear();
    for (const std::string& name : names)
      if (std::search(name.begin(), name.end(), letters.begin(), letters.end(),
                      [](char a, char b) {
                        return std::tolower(static_cast<unsigned char>(a)) ==
                               std::tolower(static_cast<unsigned char>(b));
                      }) != name.end() ||
          letters.empty())
        shown.push_back(&name);
    top = 0;
    redraw();
  }

  const std::string* first() const { return shown.empty() ? nullptr : shown.front(); }

 protected:
  int cellWidth() const { return px(side + 24); }
  int cellHeight() const { return px(side + 26); }
  int columns() const { return std::max(1, w() / cellWidth()); }

  void draw() override {
    fl_push_clip(x(), y(), w(), h());
    setDrawColour(colour::ground);
    fl_rectf(x(), y(), w(), h());
    useFont(false, 11);
    for (std::size_t i = 0; i < shown.size(); ++i) {
      const int left = x() + static_cast<int>(i) % columns() * cellWidth();
      const int cellTop = y() + static_cast<int>(i) / columns() * cellHeight() - top;
      if (cellTop + cellHeight() < y() || cellTop > y() + h()) continue;
      const std::string& name = *shown[i];
      if (name == chosenName) {
        setDrawColour(blended(colour::ground, colour::chosen, 0.3));
        fl_rectf(left, cellTop, cellWidth(), cellHeight());
      }
      auto picture = pictures.find(name);
      if (picture == pictures.end()) picture = pictures.emplace(name, SmallPicture(pictureOf(name))).first;
      setDrawColour(colour::raised);
      fl_rectf(left + px(12), cellTop + px(4), px(side), px(side));
      if (picture->second.get()) picture->second.get()->draw(left + px(12), cellTop + px(4));
      setDrawColour(colour::text);
      const std::size_t folder = name.rfind('\\');
      drawText(std::string_view(name).substr(folder == std::string::npos ? 0 : folder + 1), left + px(4),
               cellTop + cellHeight() - px(20), cellWidth() - px(8), px(18), FL_ALIGN_CENTER);
    }
    fl_pop_clip();
  }

  int handle(int event) override {
    if (event == FL_MOUSEWHEEL) {
      const int rows = (static_cast<int>(shown.size()) + columns() - 1) / columns();
      top = std::clamp(top + Fl::event_dy() * cellHeight() / 2, 0, std::max(0, rows * cellHeight() - h()));
      redraw();
      return 1;
    }
    if (event != FL_PUSH) return Fl_Widget::handle(event);
    const int column = (Fl::event_x() - x()) / cellWidth(), row = (Fl::event_y() - y() + top) / cellHeight();
    const auto index = static_cast<std::size_t>(row * columns() + column);
    if (column < columns() && index < shown.size()) {
      taken = *shown[index];
      window()->hide();
    }
    return 1;
  }

 private:
  const std::vector<std::string>& names;
  std::vector<const std::string*> shown;
  std::string chosenName;
  const std::function<std::string(const std::string&)>& pictureOf;
  int top = 0;
  std::map<std::string, SmallPicture> pictures;
};

}  // namespace

std::optional<std::string> chooseName(const std::string& title, const std::vector<std::string>& names,
                                      const std::string& now,
                                      const std::function<std::string(const std::string&)>& pictureOf) {
  Fl_Group::current(nullptr);
  Fl_Double_Window window(px(620), px(460), title.c_str());
  window.color(flColour(colour::raised));
  Fl_Input letters(px(10), px(8), window.w() - px(20), px(26));
  letters.textsize(px(13));
  letters.tooltip("letters that the name holds; Enter takes the first");
  NameGrid grid(names, now, pictureOf);
  grid.resize(px(10), px(42), window.w() - px(20), window.h() - px(52));
  window.resizable(grid);
  window.end();
  struct Both {
    Fl_Input& letters;
    NameGrid& grid;
  } both{letters, grid};
  letters.when(FL_WHEN_CHANGED | FL_WHEN_ENTER_KEY_ALWAYS);
  letters.callback(
      [](Fl_Widget*, void* data) {
        auto& [typed, cells] = *static_cast<Both*>(data);
        if (Fl::event() == FL_KEYBOARD && (Fl::event_key() == FL_Enter || Fl::event_key() == FL_KP_Enter)) {
          if (cells.first()) cells.taken = *cells.first();
          cells.window()->hide();
        } else {
          cells.filter(typed.value());
        }
      },
      &both);
  window.set_modal();
  window.position(Fl::event_x_root() - px(100), std::max(0, Fl::event_y_root() - px(200)));
  window.show();
  letters.take_focus();
  while (window.shown()) Fl::wait();
  return grid.taken;
}

int chooseEntry(const std::vector<std::string>& entries, int ticked) {
  std::vector<Fl_Menu_Item> items;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    Fl_Menu_Item item{};
    item.text = entries[i].c_str();
    item.labelsize_ = px(13);
    if (static_cast<int>(i) == ticked) item.flags = FL_MENU_RADIO | FL_MENU_VALUE;
    items.push_back(item);
  }
  items.push_back(Fl_Menu_Item{});
  // Above the window's foot, where the mouse may be.
  const int height = static_cast<int>(entries.size()) * lineHeight();
  const int top = std::max(0, std::min(Fl::event_y(), Fl::first_window()->h() - height));
  const Fl_Menu_Item* taken = items.data()->popup(Fl::event_x(), top);
  return taken ? static_cast<int>(taken - items.data()) : -1;
}

std::optional<std::pair<std::string, std::string>> chooseFunction() {
  std::vector<Fl_Menu_Item> items;
  const auto add = [&](const char* text, int flags) {
    Fl_Menu_Item item{};
    item.text = text;
    item.flags = flags;
    item.labelsize_ = px(13);
    items.push_back(item);
  };
  std::vector<std::pair<std::string, std::string>> functions;  // by item; empty for the scenes' own
  for (const SceneEntry& scene : sceneEntries()) {
    add(scene.name, FL_SUBMENU);
    functions.emplace_back();
    for (const FunctionRow& row : scene.functions) {
      add(row.name, 0);
      functions.emplace_back(scene.name, row.name);
    }
    items.push_back(Fl_Menu_Item{});
    functions.emplace_back();
  }
  items.push_back(Fl_Menu_Item{});
  const Fl_Menu_Item* taken = items.data()->popup(Fl::event_x(), Fl::event_y());
  if (!taken) return std::nullopt;
  return functions[static_cast<std::size_t>(taken - items.data())];
}

}  // namespace vex::studio
