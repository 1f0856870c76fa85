#include "production/making/product.h"

namespace vex {

using namespace image;

namespace {

constexpr int pictureQuality = 92;
constexpr int maskQuality = 95;

}  // namespace

std::vector<std::string> picturePaths(const std::string& name, PictureKind kind) {
  const bool jpeg = kind == PictureKind::jpeg || kind == PictureKind::maskedJpeg;
  const bool masked = kind == PictureKind::maskedBmp || kind == PictureKind::maskedJpeg;
  const char* extension = jpeg ? ".jpg" : ".bmp";
  std::vector<std::string> paths{"data/" + name + extension};
  if (masked) paths.push_back("data/" + name + "_mask" + extension);
  return paths;
}

std::vector<Bytes> encodePicture(const Canvas& image, PictureKind kind) {
  switch (kind) {
    case PictureKind::jpeg:
      return {encodeJpegPicture(image, pictureQuality)};
    case PictureKind::bmp:
      return {encodeBmp(image)};
    case PictureKind::maskedBmp:
      return {encodeBmp(image), encodeBmpMask(image)};
    case PictureKind::maskedJpeg:
      return {encodeJpegPicture(image, pictureQuality), encodeJpegMask(image, maskQuality)};
  }
  return {};
}

Product picture(const std::string& name, PictureKind kind, float work,
                std::function<Canvas(const Settings&)> make, const char* source) {
  Product product;
  product.outputs = picturePaths(name, kind);
  product.source = source;
  product.work = work;
  product.make = [kind, make = std::move(make)](const Settings& settings) {
    return encodePicture(make(settings), kind);
  };
  return product;
}

}  // namespace vex
