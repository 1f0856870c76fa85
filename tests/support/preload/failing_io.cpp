#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// Loaded before the C library: the VEX_FAIL_READ-th read and the VEX_FAIL_WRITE-th write of files below the
// folder VEX_FAIL_BELOW, and all that follow, fail as on a broken disk.

namespace {

bool below(int descriptor) {
  const char* folder = std::getenv("VEX_FAIL_BELOW");
  char link[64], path[4096];
  std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
  const ssize_t size = readlink(link, path, sizeof path);
  return folder && size > 0 && std::strncmp(path, folder, std::strlen(folder)) == 0;
}

bool fails(const char* variable, int& count, int descriptor) {
  const char* which = std::getenv(variable);
  if (!which || !below(descriptor) || ++count < std::atoi(which)) return false;
  errno = EIO;
  return true;
}

bool readFails(int descriptor) {
  static int count = 0;
  return fails("VEX_FAIL_READ", count, descriptor);
}

bool writeFails(int descriptor) {
  static int count = 0;
  return fails("VEX_FAIL_WRITE", count, descriptor);
}

// What ferror() tells.
std::size_t failed(std::FILE* file) {
  file->_flags |= 0x20;
  return 0;
}

template <typename Function>
Function next(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

std::size_t fread(void* to, std::size_t size, std::size_t count, std::FILE* file) {
  static const auto real = next<decltype(&fread)>("fread");
  return readFails(fileno(file)) ? failed(file) : real(to, size, count, file);
}

std::size_t __fread_chk(void* to, std::size_t, std::size_t size, std::size_t count, std::FILE* file) {
  return fread(to, size, count, file);
}

std::size_t fwrite(const void* from, std::size_t size, std::size_t count, std::FILE* file) {
  static const auto real = next<decltype(&fwrite)>("fwrite");
  return writeFails(fileno(file)) ? failed(file) : real(from, size, count, file);
}

ssize_t read(int descriptor, void* to, std::size_t size) {
  static const auto real = next<decltype(&read)>("read");
  return readFails(descriptor) ? -1 : real(descriptor, to, size);
}

ssize_t write(int descriptor, const void* from, std::size_t size) {
  static const auto real = next<decltype(&write)>("write");
  return writeFails(descriptor) ? -1 : real(descriptor, from, size);
}

}  // extern "C"
