#include "cairn-host/Canvas.h"

#include "cairn-host/OutputFile.h"
#include "cairn-host/Text.h"

#include <cairo-svg.h>

#include <cmath>
#include <filesystem>
#include <memory>

namespace CairnHost {
namespace {

constexpr const char* s_Font = "sans-serif";

cairo_status_t WriteBytes(void* closure, const unsigned char* data, unsigned int size) {
    return static_cast<COutputFile*>(closure)->Write(data, size) ? CAIRO_STATUS_SUCCESS
                                                                 : CAIRO_STATUS_WRITE_ERROR;
}

struct SDestroySurface {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct SDestroyCairo {
    void operator()(cairo_t* cairo) const { cairo_destroy(cairo); }
};

} // namespace

void CCanvas::FillPaper() {
    SetInk(s_Paper);
    cairo_paint(m_Cairo);
}

void CCanvas::SetInk(const SInk& ink) {
    cairo_set_source_rgba(m_Cairo, ink.m_Red, ink.m_Green, ink.m_Blue, ink.m_Alpha);
}

void CCanvas::SetFont(double size, bool bold) {
    cairo_select_font_face(m_Cairo, s_Font, CAIRO_FONT_SLANT_NORMAL,
                           bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(m_Cairo, size);
}

double CCanvas::GetTextWidth(const std::string& text) {
    cairo_text_extents_t extents;
    cairo_text_extents(m_Cairo, text.c_str(), &extents);
    return extents.x_advance;
}

void CCanvas::DrawText(double x, double y, const std::string& text, EAlign align) {
    if (align != EAlign::Start)
        x -= GetTextWidth(text) * (align == EAlign::Middle ? 0.5 : 1.0);
    cairo_move_to(m_Cairo, x, y);
    cairo_show_text(m_Cairo, text.c_str());
}

void CCanvas::DrawUprightText(double x, double y, const std::string& text) {
    cairo_save(m_Cairo);
    cairo_translate(m_Cairo, x, y);
    cairo_rotate(m_Cairo, -std::acos(0.0));
    DrawText(0.0, 0.0, text, EAlign::Middle);
    cairo_restore(m_Cairo);
}

void CCanvas::DrawVerticalLine(double x, const SBox& box) {
    cairo_move_to(m_Cairo, std::floor(x) + 0.5, box.m_Top);
    cairo_line_to(m_Cairo, std::floor(x) + 0.5, box.m_Bottom);
    cairo_stroke(m_Cairo);
}

void CCanvas::DrawHorizontalLine(double y, const SBox& box) {
    cairo_move_to(m_Cairo, box.m_Left, std::floor(y) + 0.5);
    cairo_line_to(m_Cairo, box.m_Right, std::floor(y) + 0.5);
    cairo_stroke(m_Cairo);
}

void CCanvas::DrawFrame(const SBox& box) {
    SetInk(s_Frame);
    cairo_set_line_width(m_Cairo, 1.0);
    cairo_rectangle(m_Cairo, box.m_Left + 0.5, box.m_Top + 0.5, box.GetWidth() - 1.0,
                    box.GetHeight() - 1.0);
    cairo_stroke(m_Cairo);
}

void CCanvas::DrawTitles(const SBox& box, const std::string& title, const std::string& subtitle) {
    SetInk(s_Text);
    SetFont(s_TitleSize, true);
    DrawText(box.m_Left, box.m_Top - 48.0, title, EAlign::Start);
    SetInk(s_QuietText);
    SetFont(s_LabelSize);
    DrawText(box.m_Left, box.m_Top - 20.0, subtitle, EAlign::Start);
}

CStatus DrawPicture(const std::string& path, double width, double height,
                    const std::function<void(CCanvas&)>& paint) {
    COutputFile output;
    if (CStatus status = output.Open(path); !status)
        return status;
    const bool vector =
        EqualsIgnoringCase(std::filesystem::path(path).extension().string(), ".svg");
    // Declared after the output, which it may write to until it goes.
    const std::unique_ptr<cairo_surface_t, SDestroySurface> surface(
        vector ? cairo_svg_surface_create_for_stream(WriteBytes, &output, width, height)
               : cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(width),
                                            static_cast<int>(height)));
    // An error while painting is told by the context alone.
    cairo_status_t status = CAIRO_STATUS_SUCCESS;
    {
        const std::unique_ptr<cairo_t, SDestroyCairo> cairo(cairo_create(surface.get()));
        CCanvas canvas(cairo.get());
        paint(canvas);
        status = cairo_status(cairo.get());
    }
    cairo_surface_flush(surface.get());
    if (status == CAIRO_STATUS_SUCCESS)
        status = cairo_surface_status(surface.get());
    if (status == CAIRO_STATUS_SUCCESS && !vector)
        status = cairo_surface_write_to_png_stream(surface.get(), WriteBytes, &output);
    cairo_surface_finish(surface.get());
    if (status == CAIRO_STATUS_SUCCESS)
        status = cairo_surface_status(surface.get());
    if (status != CAIRO_STATUS_SUCCESS && !output.HasFailed())
        return SFault{path + ": can't be drawn: " + cairo_status_to_string(status)};
    return output.Commit();
}

} // namespace CairnHost

#if defined(__SANITIZE_ADDRESS__)
// The font library keeps its patterns to the end of the process, in ways that the leak check can't
// follow.
extern "C" {
__attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}
__attribute__((visibility("default"))) const char* __lsan_default_options() {
    return "print_suppressions=0"; // They would stand among the program's own messages.
}
}
#endif
