#include "studio/panes/picture_pane.h"

#include <FL/Fl.H>
#include <FL/fl_draw.H>
#include <FL/gl.h>
#include <GL/glx.h>

#include <algorithm>

#include "platform/gl_context.h"
#include "studio/panes/look.h"

namespace vex::studio {

namespace {

constexpr int glMode = FL_RGB8 | FL_ALPHA | FL_DOUBLE | FL_DEPTH | FL_STENCIL;

void* entryPoint(const char* name) {
  return reinterpret_cast<void*>(glXGetProcAddressARB(reinterpret_cast<const GLubyte*>(name)));
}

}  // namespace

PicturePane::View::View(Session& shared) : Fl_Gl_Window(0, 0, 16, 9), session(shared) {
  mode(glMode);
}

void PicturePane::View::draw() {
  glViewport(0, 0, w(), h());
  session.show().setPicture(w(), h());
  if (const Trouble trouble = session.show().drawFrame()) session.tell(Message::Kind::trouble, *trouble);
}

// The mouse belongs to who lies below.
int PicturePane::View::handle(int event) {
  return event == FL_FOCUS ? 0 : Fl_Gl_Window::handle(event);
}

PicturePane::PicturePane(Session& shared) : Fl_Group(0, 0, 16, 9), session(shared), view(new View(shared)) {
  end();
  resizable(nullptr);
  if (!Fl_Gl_Window::can_do(glMode)) view->hide();
}

std::string PicturePane::open() {
  if (!Fl_Gl_Window::can_do(glMode))
    return "this display offers no OpenGL with depth and stencil: there is no picture, the text can be "
           "shaped all the same";
  view->make_current();
  if (!view->context() || !glGetString(GL_VERSION))
    return "the display's OpenGL gave no context: there is no picture, the text can be shaped all the same";
  hasContext = true;
  glContext = {.extensionSupported = extensionListed, .entryPoint = entryPoint};
  return "";
}

void PicturePane::makeCurrent() {
  if (hasContext) view->make_current();
}

void PicturePane::redrawPicture() {
  if (hasContext) view->redraw();
}

std::vector<std::uint32_t> PicturePane::pixels() {
  if (!hasContext) return {};
  view->make_current();
  view->draw();
  glFinish();
  std::vector<std::uint32_t> bgra(static_cast<std::size_t>(view->w()) * static_cast<std::size_t>(view->h()));
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glReadPixels(0, 0, view->w(), view->h(), GL_BGRA, GL_UNSIGNED_BYTE, bgra.data());
  return bgra;
}

void PicturePane::setAspect(Aspect chosen) {
  shape = chosen;
  place();
  redraw();
}

void PicturePane::resize(int left, int top, int width, int height) {
  Fl_Widget::resize(left, top, width, height);
  place();
}

void PicturePane::place() {
  int width = std::max(w(), 16), height = std::max(h(), 9);
  if (shape != Aspect::window) {
    const int across = shape == Aspect::wide ? 16 : 4, down = shape == Aspect::wide ? 9 : 3;
    if (width * down > height * across) {
      width = std::max(1, height * across / down);
    } else {
      height = std::max(1, width * down / across);
    }
  }
  view->resize(x() + (w() - width) / 2, y() + (h() - height) / 2, width, height);
}

void PicturePane::draw() {
  fl_color(FL_BLACK);
  fl_rectf(x(), y(), w(), h());
  if (hasContext) {
    draw_child(*view);
    return;
  }
  useFont(false, 12);
  setDrawColour(colour::dim);
  fl_draw(notice.c_str(), x() + px(20), y(), w() - px(40), h(), FL_ALIGN_CENTER | FL_ALIGN_WRAP);
}

}  // namespace vex::studio
