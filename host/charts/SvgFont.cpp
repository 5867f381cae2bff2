#include "host/charts/SvgFont.h"

#include <QSet>
#include <QString>
#include <QXmlStreamReader>
#include <hb-subset.h>
#include <memory>

#include "host/charts/ChartFonts.h"

namespace korvana {
namespace {

constexpr const char* fontFamily = "DejaVu Sans";
constexpr const char* fontFamilies = "'DejaVu Sans', 'Bitstream Vera Sans', Verdana, sans-serif";

template <auto destroy>
struct Destroy {
    template <class T>
    void operator()(T* object) const {
        destroy(object);
    }
};
using Blob = std::unique_ptr<hb_blob_t, Destroy<hb_blob_destroy>>;
using Face = std::unique_ptr<hb_face_t, Destroy<hb_face_destroy>>;
using Input = std::unique_ptr<hb_subset_input_t, Destroy<hb_subset_input_destroy>>;

struct Letters {
    QSet<char32_t> plain;
    QSet<char32_t> bold;
};

Letters lettersOf(const QByteArray& svg) {
    Letters letters;
    QXmlStreamReader reader(svg);
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement() || reader.name() != QStringLiteral("text")) continue;
        const bool bold = reader.attributes().value("font-weight").toInt() >= 600;
        const QString text = reader.readElementText(QXmlStreamReader::IncludeChildElements);
        for (const uint code : text.toUcs4())
            (bold ? letters.bold : letters.plain).insert(code);
    }
    return letters;
}

/// The font reduced to the glyphs of some characters; empty when that fails.
QByteArray subset(const QByteArray& font, const QSet<char32_t>& letters) {
    const Blob blob(hb_blob_create(font.constData(), static_cast<unsigned>(font.size()),
                                   HB_MEMORY_MODE_READONLY, nullptr, nullptr));
    const Face face(hb_face_create(blob.get(), 0));
    const Input input(hb_subset_input_create_or_fail());
    if (!input) return {};
    hb_subset_input_set_flags(input.get(), HB_SUBSET_FLAGS_NO_HINTING);
    for (const char32_t letter : letters)
        hb_set_add(hb_subset_input_unicode_set(input.get()), letter);
    const Face smaller(hb_subset_or_fail(face.get(), input.get()));
    if (!smaller) return {};
    const Blob bytes(hb_face_reference_blob(smaller.get()));
    unsigned size = 0;
    const char* data = hb_blob_get_data(bytes.get(), &size);
    return {data, static_cast<qsizetype>(size)};
}

QByteArray rule(bool bold, const QSet<char32_t>& letters) {
    if (letters.isEmpty()) return {};
    const QByteArray font = subset(chartFontData(bold), letters);
    if (font.isEmpty()) return {};
    return QByteArray("@font-face{font-family:'") + fontFamily +
           "';font-weight:" + (bold ? "bold" : "normal") + ";src:url(data:font/ttf;base64," +
           font.toBase64() + ")}";
}

} // namespace

QByteArray withItsFont(QByteArray svg) {
    const Letters letters = lettersOf(svg);
    const QByteArray rules = rule(false, letters.plain) + rule(true, letters.bold);
    svg.replace(QByteArray("font-family=\"") + fontFamily + '"',
                QByteArray("font-family=\"") + fontFamilies + '"');
    const qsizetype place = svg.indexOf("<defs>");
    if (place >= 0 && !rules.isEmpty()) svg.insert(place, "<style>" + rules + "</style>\n");
    return svg;
}

} // namespace korvana
