#include "framework/windows/LanguageFont.h"

#include "framework/base/Immortal.h"

#include <QApplication>
#include <QFont>
#include <QFontInfo>
#include <QLocale>
#include <QRawFont>

#include <fontconfig/fontconfig.h>

#include <memory>
#include <optional>

namespace {

constexpr quint32 kHanCharacter = 0x4E2D; // in every font that has any

using Pattern = std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)>;

// Chinese, Japanese and Korean share characters that each writes in its own way. Where Qt has to look for a font that
// has them it goes by the language of the system.
bool SharesCharacters(const QLocale& language) {
    switch (language.script()) {
    case QLocale::SimplifiedHanScript:
    case QLocale::TraditionalHanScript:
    case QLocale::JapaneseScript:
    case QLocale::KoreanScript:
        return true;
    default:
        return false;
    }
}

// The first of those it is set to: the fonts of the others come behind.
bool IsSystemLanguage(const FcChar8* language) {
    const std::unique_ptr<FcStrSet, decltype(&FcStrSetDestroy)> languages(FcGetDefaultLangs(), FcStrSetDestroy);
    const std::unique_ptr<FcStrList, decltype(&FcStrListDone)> list(FcStrListCreate(languages.get()), FcStrListDone);
    const FcChar8* const first = FcStrListNext(list.get());
    return first != nullptr && FcStrCmp(first, language) == 0;
}

// The family that a system set to that language takes.
QString FamilyFor(const FcChar8* language) {
    const Pattern wanted(FcPatternCreate(), FcPatternDestroy);
    FcPatternAddString(wanted.get(), FC_LANG, language);
    FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    const Pattern font(FcFontMatch(nullptr, wanted.get(), &result), FcPatternDestroy);
    FcChar8* family = nullptr;
    if (font == nullptr || FcPatternGetString(font.get(), FC_FAMILY, 0, &family) != FcResultMatch)
        return {};
    return QString::fromUtf8(reinterpret_cast<const char*>(family));
}

// Empty where the fonts of the system are right as they are.
QString FamilyNeededBy(const std::string& code) {
    if (!SharesCharacters(QLocale(QString::fromStdString(code))))
        return {};
    const auto* const given = reinterpret_cast<const FcChar8*>(code.c_str());
    const std::unique_ptr<FcChar8, decltype(&FcStrFree)> language(FcLangNormalize(given), FcStrFree);
    return language == nullptr || IsSystemLanguage(language.get()) ? QString() : FamilyFor(language.get());
}

} // namespace

// The family stands behind the desktop's own, or in front of it if that would draw the characters itself.
void UseFontOfLanguage(const std::string& code) {
    static const Immortal<std::optional<QFont>> kept; // the desktop's, while another one stands in its place
    std::optional<QFont>& ofDesktop = *kept;
    if (ofDesktop) {
        QApplication::setFont(*ofDesktop);
        ofDesktop.reset();
    }
    const QString family = FamilyNeededBy(code);
    if (family.isEmpty())
        return;
    ofDesktop = QApplication::font();
    const bool hasCharacters = QRawFont::fromFont(*ofDesktop).supportsCharacter(kHanCharacter);
    const QString own = QFontInfo(*ofDesktop).family(); // a generic name would give way to any font's own
    QFont font = *ofDesktop;
    font.setFamilies(hasCharacters ? QStringList{family, own} : QStringList{own, family});
    QApplication::setFont(font);
}
