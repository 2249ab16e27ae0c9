#include "client/desktop/backdrop.h"

namespace vexel::client {

namespace {

constexpr char kHint[] = "Open a movie from the File menu, or drop one here.";
constexpr double kGrey = 0.6;
constexpr int kMargin = 12;  // pixels

}  // namespace

void DrawBackdrop(cairo_t* cr, GtkWidget* area, bool empty) {
  cairo_set_source_rgb(cr, 0, 0, 0);
  cairo_paint(cr);
  if (!empty) return;
  const int width = gtk_widget_get_allocated_width(area);
  PangoLayout* text = gtk_widget_create_pango_layout(area, kHint);
  pango_layout_set_alignment(text, PANGO_ALIGN_CENTER);
  pango_layout_set_width(text, (width - 2 * kMargin) * PANGO_SCALE);
  int height = 0;
  pango_layout_get_pixel_size(text, nullptr, &height);
  cairo_set_source_rgb(cr, kGrey, kGrey, kGrey);
  cairo_move_to(cr, kMargin, (gtk_widget_get_allocated_height(area) - height) / 2.0);
  pango_cairo_show_layout(cr, text);
  g_object_unref(text);
}

}  // namespace vexel::client
