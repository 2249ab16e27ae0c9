#include "client/desktop/picture_file.h"

#include <vector>

#include "client/desktop/file_dialogs.h"

namespace vexel::client {

void SavePicture(GtkWindow* parent, const XSurface& picture, const std::string& movie,
                 MessageBar* messages) {
  // As it is now, not when the dialog is through.
  const std::vector<uint8_t> rgb = picture.Rgb();
  const int width = picture.width(), height = picture.height();
  if (rgb.empty()) return;
  const auto path = AskWhereToSave(parent, "Save the picture", movie + ".png");
  if (!path) return;
  GdkPixbuf* pixels = gdk_pixbuf_new_from_data(rgb.data(), GDK_COLORSPACE_RGB, FALSE, 8, width,
                                               height, width * 3, nullptr, nullptr);
  GError* error = nullptr;
  if (!gdk_pixbuf_save(pixels, path->c_str(), "png", &error, nullptr)) {
    messages->TellProblem(std::string("The picture was not saved: ") + error->message);
    g_error_free(error);
  }
  g_object_unref(pixels);
}

}  // namespace vexel::client
