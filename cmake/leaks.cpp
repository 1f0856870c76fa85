// What other people's libraries keep until the process ends, for the leak checker of the sanitizer
// build: GL driver, window toolkit, font library, sound output.

extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_options();
extern "C" int dlclose(void*);

extern "C" const char* __lsan_default_suppressions() {
  return "leak:libGLX_mesa\n"
         "leak:libEGL_mesa\n"
         "leak:swrast_dri.so\n"
         "leak:libgallium\n"
         "leak:libfontconfig\n"
         "leak:libfltk\n"
         "leak:libglut\n"
         "leak:libX11\n"
         "leak:libopenal\n"
         // What it has read of a file that it refuses.
         "leak:libassimp\n"
         // libsndfile forgets the decoder of a Vorbis file that it refuses.
         "leak:vorbis_info_init\n";
}

extern "C" const char* __lsan_default_options() {
  return "print_suppressions=0";
}

// The checker runs when the GL driver is already unloaded, and could not tell whose leaks it sees:
// keep every library.
extern "C" int dlclose(void*) {
  return 0;
}
