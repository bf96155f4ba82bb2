#if defined(__linux__)

#include "screens/draw/system_glyphs.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <map>

namespace zephyra {

namespace {

bool isTrue(FcPattern* font, const char* property) {
    FcBool is = FcFalse;
    return FcPatternGetBool(font, property, 0, &is) == FcResultMatch && is == FcTrue;
}

/// A variable typeface stands in the list with its instances, too, which have weights.
bool hasOutline(FcPattern* font, FcChar32 character) {
    FcCharSet* characters = nullptr;
    return FcPatternGetCharSet(font, FC_CHARSET, 0, &characters) == FcResultMatch &&
           FcCharSetHasChar(characters, character) && isTrue(font, FC_OUTLINE) &&
           !isTrue(font, FC_COLOR) && !isTrue(font, FC_VARIABLE);
}

/// All typefaces, the user's choice for plain text first; null where there are none.
FcFontSet* sortedFonts(int weight) {
    FcPattern* const wanted = FcPatternCreate();
    FcPatternAddString(wanted, FC_FAMILY, reinterpret_cast<const FcChar8*>("sans-serif"));
    FcPatternAddInteger(wanted, FC_WEIGHT, weight);
    FcConfigSubstitute(nullptr, wanted, FcMatchPattern);
    FcDefaultSubstitute(wanted);
    FcResult result = FcResultNoMatch;
    FcFontSet* const fonts = FcFontSort(nullptr, wanted, FcFalse, nullptr, &result);
    FcPatternDestroy(wanted);
    return fonts;
}

/// A path of FreeType's outlines, in ems.
struct PathMaker {
    juce::Path& path;
    float scale;

    juce::Point<float> point(const FT_Vector* at) const {
        return {scale * static_cast<float>(at->x), -scale * static_cast<float>(at->y)};
    }
    static PathMaker& of(void* maker) { return *static_cast<PathMaker*>(maker); }

    static int moveTo(const FT_Vector* to, void* maker) {
        of(maker).path.closeSubPath();
        of(maker).path.startNewSubPath(of(maker).point(to));
        return 0;
    }
    static int lineTo(const FT_Vector* to, void* maker) {
        of(maker).path.lineTo(of(maker).point(to));
        return 0;
    }
    static int conicTo(const FT_Vector* by, const FT_Vector* to, void* maker) {
        of(maker).path.quadraticTo(of(maker).point(by), of(maker).point(to));
        return 0;
    }
    static int cubicTo(const FT_Vector* by, const FT_Vector* then, const FT_Vector* to,
                       void* maker) {
        of(maker).path.cubicTo(of(maker).point(by), of(maker).point(then), of(maker).point(to));
        return 0;
    }
};

std::optional<SystemGlyph> read(FT_Face face, FT_ULong character) {
    const FT_UInt index = FT_Get_Char_Index(face, character);
    if (index == 0 || face->units_per_EM == 0) return std::nullopt;
    if (FT_Load_Glyph(face, index, FT_LOAD_NO_SCALE | FT_LOAD_NO_BITMAP) != 0) return std::nullopt;
    if (face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) return std::nullopt;
    SystemGlyph glyph;
    const float scale = 1.0f / static_cast<float>(face->units_per_EM);
    PathMaker maker{glyph.outline, scale};
    const FT_Outline_Funcs calls{
        PathMaker::moveTo, PathMaker::lineTo, PathMaker::conicTo, PathMaker::cubicTo, 0, 0};
    if (FT_Outline_Decompose(&face->glyph->outline, &calls, &maker) != 0) return std::nullopt;
    glyph.outline.closeSubPath();
    glyph.width = scale * static_cast<float>(face->glyph->metrics.horiAdvance);
    return glyph;
}

} // namespace

/// The list, and those files of it that were needed.
class SystemGlyphs::Faces {
public:
    explicit Faces(int weight) : fonts_(sortedFonts(weight)) {
        if (FT_Init_FreeType(&library_) != 0) library_ = nullptr;
    }
    ~Faces() {
        for (const auto& [place, face] : open_) FT_Done_Face(face);
        if (library_) FT_Done_FreeType(library_);
        if (fonts_) FcFontSetDestroy(fonts_);
    }
    Faces(const Faces&) = delete;
    Faces& operator=(const Faces&) = delete;

    std::optional<SystemGlyph> find(FcChar32 character) {
        for (int i = 0; fonts_ && i < fonts_->nfont; ++i) {
            if (!hasOutline(fonts_->fonts[i], character)) continue;
            if (const FT_Face face = opened(i))
                if (auto glyph = read(face, character)) return glyph;
        }
        return std::nullopt;
    }

private:
    /// Null for a file that has gone, or is none of a typeface any more.
    FT_Face opened(int place) {
        if (const auto found = open_.find(place); found != open_.end()) return found->second;
        FcChar8* file = nullptr;
        int index = 0;
        FT_Face face = nullptr;
        if (!library_ ||
            FcPatternGetString(fonts_->fonts[place], FC_FILE, 0, &file) != FcResultMatch)
            return nullptr;
        FcPatternGetInteger(fonts_->fonts[place], FC_INDEX, 0, &index);
        if (FT_New_Face(library_, reinterpret_cast<const char*>(file), index, &face) != 0)
            return nullptr;
        if (FT_Select_Charmap(face, FT_ENCODING_UNICODE) != 0) {
            FT_Done_Face(face);
            return nullptr;
        }
        return open_[place] = face;
    }

    FcFontSet* fonts_;
    FT_Library library_ = nullptr;
    std::map<int, FT_Face> open_;
};

SystemGlyphs::SystemGlyphs(Weight weight) : weight_(weight) {}
SystemGlyphs::~SystemGlyphs() = default;

std::optional<SystemGlyph> SystemGlyphs::find(juce::juce_wchar character) {
    if (!faces_)
        faces_ = std::make_unique<Faces>(weight_ == Weight::medium ? FC_WEIGHT_MEDIUM
                                                                   : FC_WEIGHT_REGULAR);
    return faces_->find(static_cast<FcChar32>(character));
}

} // namespace zephyra

#endif
