// The default content of the profile file and the pattern file.
#include "uxsettings.h"

#include <QStringList>

namespace {

struct ColourPatch {
    const char* colour;
    const char* weight; // weight in the weighted profile
};

const ColourPatch kPatches[24] = {
    {"#745143", "0.2176"}, {"#c79381", "0.6475"}, {"#5b7a9c", "0.3846"}, {"#5a6c40", "0.2937"},
    {"#8280b0", "0.4757"}, {"#5cbeac", "0.7803"}, {"#e07c2f", "0.6027"}, {"#445baa", "0.2507"},
    {"#c65261", "0.3915"}, {"#5e3a6a", "0.1426"}, {"#9fbd3f", "0.7993"}, {"#e6a227", "0.7869"},
    {"#233f93", "0.1327"}, {"#43954a", "0.4616"}, {"#b43139", "0.2732"}, {"#eec614", "1.033"},
    {"#c15497", "0.3969"}, {"#0088aa", "0.3921"}, {"#f5f5f3", "1.415"},  {"#c8caca", "1.032"},
    {"#a1a3a3", "0.6992"}, {"#79797a", "0.4026"}, {"#525456", "0.1984"}, {"#313133", "0.06659"},
};

// Rows y - 1, y and y + 1 of a pattern (columns x - 2 ... x + 2) and its code.
// The outer rows y - 2 and y + 2 never matter in the defaults.
struct DefaultPattern {
    const char* above;
    const char* centre;
    const char* below;
    int code;
};

// Specific shapes first: the first pattern that fits wins, so the
// single-neighbour fallbacks 23 ... 30 must come after them.
const DefaultPattern kPatterns[34] = {
    {"-1,0,0,0,-1", "-1,0,1,0,-1", "-1,0,0,0,-1", 111},
    {"-1,0,0,0,-1", "-1,0,1,0,-1", "-1,1,0,0,-1", 111},
    {"-1,0,0,1,-1", "-1,0,1,0,-1", "-1,0,0,0,-1", 111},
    {"-1,0,0,0,-1", "-1,0,1,0,-1", "-1,0,0,1,-1", 111},
    {"-1,1,0,0,-1", "-1,0,1,0,-1", "-1,0,0,0,-1", 111},
    {"-1,0,0,0,-1", "-1,0,1,1,-1", "-1,0,0,0,-1", 112},
    {"-1,0,0,0,-1", "-1,1,1,0,-1", "-1,0,0,0,-1", 112},
    {"-1,0,0,0,-1", "-1,1,1,1,-1", "-1,0,0,0,-1", 112},
    {"-1,0,0,0,-1", "-1,0,1,0,-1", "-1,0,1,0,-1", 111},
    {"-1,0,1,0,-1", "-1,0,1,0,-1", "-1,0,0,0,-1", 111},
    {"-1,0,1,0,-1", "-1,0,1,0,-1", "-1,0,1,0,-1", 111},
    {"-1,-1,-1,-1,-1", "-1,0,1,0,-1", "-1,-1,-1,-1,-1", 111},
    {"-1,-1,0,-1,-1", "-1,-1,1,-1,-1", "-1,-1,0,-1,-1", 112},
    {"-1,-1,1,0,-1", "-1,1,1,0,-1", "-1,0,0,0,-1", 106},
    {"-1,0,1,-1,-1", "-1,0,1,1,-1", "-1,0,0,0,-1", 108},
    {"-1,0,0,0,-1", "-1,0,1,1,-1", "-1,0,1,-1,-1", 102},
    {"-1,0,0,0,-1", "-1,1,1,0,-1", "-1,-1,1,0,-1", 104},
    {"-1,-1,-1,-1,-1", "0,0,1,1,-1", "-1,-1,-1,-1,-1", 101},
    {"-1,-1,-1,-1,-1", "-1,1,1,0,0", "-1,-1,-1,-1,-1", 105},
    {"-1,0,1,0,-1", "-1,1,1,1,-1", "-1,1,1,1,-1", 102},
    {"-1,1,1,1,-1", "-1,1,1,1,-1", "-1,0,1,0,-1", 108},
    {"-1,1,1,0,-1", "-1,1,1,1,-1", "-1,1,1,0,-1", 104},
    {"-1,0,1,1,-1", "-1,1,1,1,-1", "-1,0,1,1,-1", 102},
    {"-1,0,-1,-1,-1", "-1,-1,1,-1,-1", "-1,-1,-1,-1,-1", 102},
    {"-1,-1,0,-1,-1", "-1,-1,1,-1,-1", "-1,-1,-1,-1,-1", 103},
    {"-1,-1,-1,0,-1", "-1,-1,1,-1,-1", "-1,-1,-1,-1,-1", 104},
    {"-1,-1,-1,-1,-1", "-1,-1,1,0,-1", "-1,-1,-1,-1,-1", 105},
    {"-1,-1,-1,-1,-1", "-1,-1,1,-1,-1", "-1,-1,-1,0,-1", 106},
    {"-1,-1,-1,-1,-1", "-1,-1,1,-1,-1", "-1,-1,0,-1,-1", 107},
    {"-1,-1,-1,-1,-1", "-1,-1,1,-1,-1", "-1,0,-1,-1,-1", 108},
    {"-1,-1,-1,-1,-1", "-1,0,1,-1,-1", "-1,-1,-1,-1,-1", 101},
    {"-1,-1,-1,-1,-1", "0,1,1,1,1", "-1,-1,-1,-1,-1", 109},
    {"-1,-1,-1,-1,-1", "1,1,1,1,0", "-1,-1,-1,-1,-1", 110},
    {"-1,-1,-1,-1,-1", "0,1,1,1,0", "-1,-1,-1,-1,-1", 113},
};

QStringList row(const char* items)
{
    return QString::fromLatin1(items).split(QLatin1Char(','));
}

} // namespace

void UXCSettings::_createDefaultCCM()
{
    for (const bool weighted : {false, true}) {
        m_profileSettings->beginGroup(weighted ? QStringLiteral("Profile SRGB Weighted")
                                               : QStringLiteral("Profile SRGB"));
        for (int i = 0; i < 24; ++i) {
            const QString weight = weighted ? QString::fromLatin1(kPatches[i].weight) : QStringLiteral("1");
            m_profileSettings->setValue(QStringLiteral("%1").arg(i, 2, 10, QLatin1Char('0')),
                                        QStringList{QString::fromLatin1(kPatches[i].colour), weight});
        }
        m_profileSettings->endGroup();
    }
    m_profileSettings->sync();
}

void UXCSettings::_createUserMapSettings()
{
    const QStringList zeros{QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("0")};
    // Only one group is closed at the end, so each group nests inside the one
    // before it; readers of the profile file expect exactly that layout.
    for (int i = 0; i < 5; ++i) {
        m_profileSettings->beginGroup(QStringLiteral("nuc_usermap%1.ge3").arg(i));
        m_profileSettings->setValue(QStringLiteral("Exposure, Gain, Temperature"), zeros);
    }
    m_profileSettings->endGroup();
    m_profileSettings->sync();
}

void UXCSettings::_createDefaultDeffMatch()
{
    const QStringList dontCare = row("-1,-1,-1,-1,-1");
    for (int i = 0; i < 34; ++i) {
        const DefaultPattern& pattern = kPatterns[i];
        m_deffMatchSettings->beginGroup(QStringLiteral("DefMatch%1").arg(i, 2, 10, QLatin1Char('0')));
        m_deffMatchSettings->setValue(QStringLiteral("a"), dontCare);
        m_deffMatchSettings->setValue(QStringLiteral("b"), row(pattern.above));
        m_deffMatchSettings->setValue(QStringLiteral("c"), row(pattern.centre));
        m_deffMatchSettings->setValue(QStringLiteral("d"), row(pattern.below));
        m_deffMatchSettings->setValue(QStringLiteral("e"), dontCare);
        m_deffMatchSettings->setValue(QStringLiteral("f"), pattern.code);
        m_deffMatchSettings->endGroup();
    }
    m_deffMatchSettings->sync();
}
