#include "TVLProjectSettings.h"

#include "TVLStoredValue_p.h"

using namespace Qt::StringLiterals;

namespace {

constexpr TVLSettingRow<TVLSettings::FlagSetting, bool> ProjectFlags[] = {
    {TVLSettings::AddFrontMatter, u"Compile/addFrontMatter", false},
    {TVLSettings::CountIncluded, u"Statistics/included", true},
    {TVLSettings::CountExcluded, u"Statistics/excluded", false},
    {TVLSettings::CountAnnotations, u"Statistics/annotations", false},
    {TVLSettings::CountFootnotes, u"Statistics/footnotes", true},
    {TVLSettings::CountSubDocuments, u"Statistics/subDocuments", true},
    {TVLSettings::FirstTypewriterScrolling, u"TypewriterScrolling/first", false},
    {TVLSettings::SecondTypewriterScrolling, u"TypewriterScrolling/second", false},
    {TVLSettings::FullScreenTypewriterScrolling, u"TypewriterScrolling/full", true},
    {TVLSettings::GhostNotes, u"ghostNotesEnabled", false},
    {TVLSettings::ShowInvisibles, u"showInvisibles", false},
    {TVLSettings::ExcludeFromBackups, u"excludeFromAutomaticBackups", false},
};

constexpr TVLSettingRow<TVLSettings::IntSetting, int> ProjectInts[] = {
    {TVLSettings::ProjectInspectorMode, u"Inspector/mode", 0},
    {TVLSettings::InspectorProjectNote, u"Inspector/projectNoteId", -1},
    {TVLSettings::FrontMatterItem, u"Compile/FrontMatterId", -1},
    {TVLSettings::CompileFormat, u"Compile/Format", 4},
    {TVLSettings::PageCountType, u"Statistics/pageCountType", 0},
    {TVLSettings::PageCountTarget, u"Statistics/pageCountTarget", 350},
    {TVLSettings::FirstEditorZoom, u"firstEditorZoomIndex", 9},
    {TVLSettings::SecondEditorZoom, u"secondEditorZoomIndex", 9},
    {TVLSettings::FullScreenZoom, u"fullScreenZoomIndex", 9},
    {TVLSettings::LockedEditorPane, u"lockEditorPane", 0},
    {TVLSettings::FirstEditorMode, u"firstEditorMode", 0},
    {TVLSettings::SecondEditorMode, u"secondEditorMode", 0},
    {TVLSettings::GroupMode, u"groupMode", 2},
    {TVLSettings::SecondGroupMode, u"secondGroupMode", 2},
};

constexpr TVLSettingRow<TVLSettings::StringSetting, QStringView> StringRows[] = {
    {TVLSettings::CompileContentRoot, u"Compile/ContentRoot", u"-1"},
};

/** A default for settings that are empty when nothing is stored. */
struct Empty
{
};

constexpr TVLSettingRow<TVLSettings::StringListSetting, Empty> StringListRows[] = {
    {TVLSettings::AutoCorrectionWords, u"AutoCorrection/projectWords", {}},
};

constexpr TVLSettingRow<TVLSettings::ByteArraySetting, Empty> ByteArrayRows[] = {
    {TVLSettings::ProjectReplacements, u"Replacements/project", {}},
    {TVLSettings::FreeformPositions, u"Corkboard/FreeformPositions", {}},
};

using ProjectIntList = TVLSettingRow<TVLSettings::IntListSetting, QList<int>>;

const ProjectIntList *findProjectIntList(TVLSettings::IntListSetting setting)
{
    static const ProjectIntList rows[] = {
        {TVLSettings::FirstEditorSource, u"firstEditorSource", {3}},
        {TVLSettings::SecondEditorSource, u"secondEditorSource", {3}},
        {TVLSettings::ExpandedBinderItems, u"expandedBinderItems", {0, 1, 2}},
        {TVLSettings::FirstOutlinerExpandedItems, u"Outliner/First/ExpandedItems", {}},
        {TVLSettings::SecondOutlinerExpandedItems, u"Outliner/Second/ExpandedItems", {}},
    };
    return tvlFindSetting(rows, setting);
}

const QString IgnoreListKey = u"ignoreList"_s;
const QString FirstEditorHistoryKey = u"firstEditorHistory"_s;
const QString SecondEditorHistoryKey = u"secondEditorHistory"_s;
const QString BinderHistoryKey = u"binderHistory"_s;
const QString FullScreenHistoryKey = u"fullScreenHistory"_s;

QByteArray storedHistory(const QSettings &settings, const QString &key)
{
    return tvlStoredOr(settings, key, tvlStoredExactly<QByteArray>, QByteArray());
}

} // namespace

TVLProjectSettings::TVLProjectSettings(const QString &path, QObject *parent)
    : TVLLayoutSettings(path, parent)
{
}

TVLProjectSettings::~TVLProjectSettings() = default;

bool TVLProjectSettings::defaultValue(FlagSetting setting) const
{
    const auto *row = tvlFindSetting(ProjectFlags, setting);
    return row ? row->defaultValue : TVLLayoutSettings::defaultValue(setting);
}

int TVLProjectSettings::defaultValue(IntSetting setting) const
{
    const auto *row = tvlFindSetting(ProjectInts, setting);
    return row ? row->defaultValue : TVLLayoutSettings::defaultValue(setting);
}

QString TVLProjectSettings::defaultValue(StringSetting setting) const
{
    const auto *row = tvlFindSetting(StringRows, setting);
    return row ? row->defaultValue.toString() : TVLLayoutSettings::defaultValue(setting);
}

QList<int> TVLProjectSettings::defaultValue(IntListSetting setting) const
{
    const auto *row = findProjectIntList(setting);
    return row ? row->defaultValue : TVLLayoutSettings::defaultValue(setting);
}

QString TVLProjectSettings::keyText(FlagSetting setting) const
{
    const auto *row = tvlFindSetting(ProjectFlags, setting);
    return row ? row->key.toString() : TVLLayoutSettings::keyText(setting);
}

QString TVLProjectSettings::keyText(IntSetting setting) const
{
    const auto *row = tvlFindSetting(ProjectInts, setting);
    return row ? row->key.toString() : TVLLayoutSettings::keyText(setting);
}

QString TVLProjectSettings::keyText(StringSetting setting) const
{
    const auto *row = tvlFindSetting(StringRows, setting);
    return row ? row->key.toString() : TVLLayoutSettings::keyText(setting);
}

QString TVLProjectSettings::keyText(StringListSetting setting) const
{
    const auto *row = tvlFindSetting(StringListRows, setting);
    return row ? row->key.toString() : TVLLayoutSettings::keyText(setting);
}

QString TVLProjectSettings::keyText(IntListSetting setting) const
{
    const auto *row = findProjectIntList(setting);
    return row ? row->key.toString() : TVLLayoutSettings::keyText(setting);
}

QString TVLProjectSettings::keyText(ByteArraySetting setting) const
{
    const auto *row = tvlFindSetting(ByteArrayRows, setting);
    return row ? row->key.toString() : TVLLayoutSettings::keyText(setting);
}

QStringList TVLProjectSettings::ignoreList() const
{
    return tvlStoredOr(*this, IgnoreListKey, tvlStoredTexts, QStringList());
}

void TVLProjectSettings::setIgnoreList(const QStringList &words)
{
    setValue(IgnoreListKey, words);
}

QByteArray TVLProjectSettings::firstEditorHistory() const
{
    return storedHistory(*this, FirstEditorHistoryKey);
}

void TVLProjectSettings::setFirstEditorHistory(const QByteArray &history)
{
    setValue(FirstEditorHistoryKey, history);
}

QByteArray TVLProjectSettings::secondEditorHistory() const
{
    return storedHistory(*this, SecondEditorHistoryKey);
}

void TVLProjectSettings::setSecondEditorHistory(const QByteArray &history)
{
    setValue(SecondEditorHistoryKey, history);
}

QByteArray TVLProjectSettings::binderHistory() const
{
    return storedHistory(*this, BinderHistoryKey);
}

void TVLProjectSettings::setBinderHistory(const QByteArray &history)
{
    setValue(BinderHistoryKey, history);
}

QByteArray TVLProjectSettings::fullScreenHistory() const
{
    return storedHistory(*this, FullScreenHistoryKey);
}

void TVLProjectSettings::setFullScreenHistory(const QByteArray &history)
{
    setValue(FullScreenHistoryKey, history);
}
