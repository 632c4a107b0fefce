#include "TVLLayoutSettings.h"

#include "TVLStoredValue_p.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr TVLSettingRow<TVLSettings::FlagSetting, bool> LayoutFlags[] = {
    {TVLSettings::ShowLabelMark, u"IndexCard/ShowLabelMark", true},
    {TVLSettings::ShowStatusStamp, u"IndexCard/ShowStatusStamp", true},
    {TVLSettings::ShowKeywordColors, u"IndexCard/ShowKeywordColors", false},
    {TVLSettings::TintIndexCards, u"IndexCard/TintIndexCard", false},
    {TVLSettings::TintBinderItems, u"Appearance/TintBinderItems", false},
    {TVLSettings::TintBinderIcons, u"Appearance/TintBinderIcons", false},
    {TVLSettings::TintOutlinerItems, u"Outliner/TintOutlinerItems", false},
    {TVLSettings::SmallCardFont, u"IndexCard/SmallFont", false},
    {TVLSettings::SizeCardsToEditor, u"IndexCard/SizeToEditor", false},
    {TVLSettings::LayoutKeepsViews, u"Layout/SaveCorkAndOutline", false},
    {TVLSettings::LayoutKeepsMetaData, u"Layout/SaveMetaAppearance", false},
};

constexpr TVLSettingRow<TVLSettings::IntSetting, int> LayoutInts[] = {
    {TVLSettings::CardSpacing, u"IndexCard/Spacing", 0},
    {TVLSettings::CardRatio, u"IndexCard/Ratio", 3},
    {TVLSettings::CardSize, u"IndexCard/Size", 220},
    {TVLSettings::KeywordChips, u"IndexCard/KeywordChips", 0},
    {TVLSettings::CardsAcross, u"Corkboard/cardsAcross", 0},
};

using LayoutIntList = TVLSettingRow<TVLSettings::IntListSetting, QList<int>>;

const LayoutIntList *findLayoutIntList(TVLSettings::IntListSetting setting)
{
    static const LayoutIntList rows[] = {
        {TVLSettings::FirstOutlinerColumnWidths,
         u"Outliner/First/ColumnWidths",
         {200, 150, 100, 100}},
        {TVLSettings::SecondOutlinerColumnWidths,
         u"Outliner/Second/ColumnWidths",
         {200, 150, 100, 100}},
        {TVLSettings::FirstOutlinerVisibleColumns, u"Outliner/First/VisibleColumns", {0, 1, 2, 3}},
        {TVLSettings::SecondOutlinerVisibleColumns,
         u"Outliner/Second/VisibleColumns",
         {0, 1, 2, 3}},
    };
    return tvlFindSetting(rows, setting);
}

const QString NameKey = u"layoutName"_s;
const QString PreviewKey = u"layoutPreview"_s;
const QString WindowSizeKey = u"windowSize"_s;
const QString WindowPositionKey = u"windowPosition"_s;
const QString WindowMaximizedKey = u"windowMaximized"_s;
const QString VisibilityFlagsKey = u"visibilityFlags"_s;
const QString BinderAffectsKey = u"binderAffects"_s;
const QString InspectorModeKey = u"inspectorMode"_s;
const QString UserInspectorModeKey = u"inspectorModeUserSelected"_s;
const QString EditorSplitterKey = u"editorSplitterState"_s;
const QString InspectorSplitterKey = u"inspectorSplitterState"_s;
const QString BinderSplitterKey = u"binderSplitterState"_s;

constexpr char PreviewFormat[] = "PNG";

/** A screen with less room than this for windows is a low one. */
constexpr int LowScreenHeight = 701;

constexpr int AllParts = 61806;
constexpr int PartsOnLowScreen = 61708;

QRect availableGeometry(const QWidget *widget)
{
    const QScreen *screen = widget ? widget->screen() : QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect();
}

/** Three quarters of what is available below a limit, from there on half. */
int windowExtent(int available, int limit)
{
    const int extent = available - 1;
    return extent < limit ? (3 * extent + 3) / 4 : (extent + 1) / 2;
}

/** A place where a window can be; not so far away that adding its size could overflow. */
std::optional<QPoint> toWindowPosition(const QVariant &stored)
{
    constexpr QRect Limits(QPoint(-QWIDGETSIZE_MAX, -QWIDGETSIZE_MAX),
                           QPoint(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
    const std::optional<QPoint> position = tvlStoredExactly<QPoint>(stored);
    return position && Limits.contains(*position) ? position : std::nullopt;
}

/** A size that a window can have. */
std::optional<QSize> toWindowSize(const QVariant &stored)
{
    constexpr QSize Limit(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    const std::optional<QSize> size = tvlStoredExactly<QSize>(stored);
    return size && size->isValid() && size->boundedTo(Limit) == *size ? size : std::nullopt;
}

int storedInt(const QSettings &settings, const QString &key, int fallback = 0)
{
    return tvlStoredOr(settings, key, tvlStoredInt, fallback);
}

QByteArray storedBytes(const QSettings &settings, const QString &key)
{
    return tvlStoredOr(settings, key, tvlStoredExactly<QByteArray>, QByteArray());
}

} // namespace

TVLLayoutSettings::TVLLayoutSettings(const QString &path, QObject *parent)
    : TVLSettings(path, parent)
{
}

TVLLayoutSettings::~TVLLayoutSettings() = default;

bool TVLLayoutSettings::defaultValue(FlagSetting setting) const
{
    const auto *row = tvlFindSetting(LayoutFlags, setting);
    return row ? row->defaultValue : TVLSettings::defaultValue(setting);
}

int TVLLayoutSettings::defaultValue(IntSetting setting) const
{
    const auto *row = tvlFindSetting(LayoutInts, setting);
    return row ? row->defaultValue : TVLSettings::defaultValue(setting);
}

QList<int> TVLLayoutSettings::defaultValue(IntListSetting setting) const
{
    const auto *row = findLayoutIntList(setting);
    return row ? row->defaultValue : TVLSettings::defaultValue(setting);
}

QString TVLLayoutSettings::keyText(FlagSetting setting) const
{
    const auto *row = tvlFindSetting(LayoutFlags, setting);
    return row ? row->key.toString() : TVLSettings::keyText(setting);
}

QString TVLLayoutSettings::keyText(IntSetting setting) const
{
    const auto *row = tvlFindSetting(LayoutInts, setting);
    return row ? row->key.toString() : TVLSettings::keyText(setting);
}

QString TVLLayoutSettings::keyText(IntListSetting setting) const
{
    const auto *row = findLayoutIntList(setting);
    return row ? row->key.toString() : TVLSettings::keyText(setting);
}

QString TVLLayoutSettings::name() const
{
    return tvlStoredOr(*this, NameKey, tvlStoredText, QString());
}

void TVLLayoutSettings::setName(const QString &name)
{
    setValue(NameKey, name);
}

QImage TVLLayoutSettings::preview() const
{
    return QImage::fromData(storedBytes(*this, PreviewKey), PreviewFormat);
}

void TVLLayoutSettings::setPreview(const QImage &preview)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    // Only a null image can't be saved; its empty bytes take the place of an older preview.
    preview.save(&buffer, PreviewFormat);
    setValue(PreviewKey, buffer.data());
}

QRect TVLLayoutSettings::windowGeometry(const QWidget *widget) const
{
    const QRect fallback = defaultMainWindowGeometry(widget);
    return {tvlStoredOr(*this, WindowPositionKey, toWindowPosition, fallback.topLeft()),
            tvlStoredOr(*this, WindowSizeKey, toWindowSize, fallback.size())};
}

void TVLLayoutSettings::setWindowPosition(const QPoint &position)
{
    setValue(WindowPositionKey, position);
}

void TVLLayoutSettings::setWindowSize(const QSize &size, bool maximized)
{
    setValue(WindowSizeKey, size);
    setValue(WindowMaximizedKey, maximized);
}

bool TVLLayoutSettings::windowMaximized(const QWidget *widget) const
{
    return tvlStoredOr(*this, WindowMaximizedKey, tvlStoredFlag,
                       defaultWindowMaximized(availableGeometry(widget)));
}

int TVLLayoutSettings::visibilityFlags(const QWidget *widget) const
{
    return storedInt(*this, VisibilityFlagsKey, defaultVisibilityFlags(availableGeometry(widget)));
}

void TVLLayoutSettings::setVisibilityFlags(int flags)
{
    setValue(VisibilityFlagsKey, flags);
}

QRect TVLLayoutSettings::defaultMainWindowGeometry(const QWidget *widget)
{
    return defaultMainWindowGeometry(availableGeometry(widget));
}

QRect TVLLayoutSettings::defaultMainWindowGeometry(const QRect &available)
{
    constexpr int WidthLimit = 1500;
    constexpr int HeightLimit = 900;
    QRect geometry(0, 0, windowExtent(available.width(), WidthLimit),
                   windowExtent(available.height(), HeightLimit));
    geometry.moveCenter(available.center());
    return geometry;
}

bool TVLLayoutSettings::defaultWindowMaximized(const QRect &available)
{
    return available.height() < LowScreenHeight;
}

int TVLLayoutSettings::defaultVisibilityFlags(const QRect &available)
{
    return available.height() < LowScreenHeight ? PartsOnLowScreen : AllParts;
}

TVL::AffectType TVLLayoutSettings::binderAffectsType() const
{
    return TVL::AffectType(storedInt(*this, BinderAffectsKey));
}

void TVLLayoutSettings::setBinderAffectsType(TVL::AffectType type)
{
    setValue(BinderAffectsKey, int(type));
}

TVL::InspectorMode TVLLayoutSettings::inspectorMode() const
{
    return TVL::InspectorMode(storedInt(*this, InspectorModeKey));
}

void TVLLayoutSettings::setInspectorMode(TVL::InspectorMode mode)
{
    setValue(InspectorModeKey, int(mode));
}

TVL::InspectorMode TVLLayoutSettings::userSelectedInspectorMode() const
{
    return TVL::InspectorMode(storedInt(*this, UserInspectorModeKey));
}

void TVLLayoutSettings::setUserSelectedInspectorMode(TVL::InspectorMode mode)
{
    setValue(UserInspectorModeKey, int(mode));
}

QByteArray TVLLayoutSettings::editorSplitterState() const
{
    return storedBytes(*this, EditorSplitterKey);
}

void TVLLayoutSettings::setEditorSplitterState(const QByteArray &state)
{
    setValue(EditorSplitterKey, state);
}

QByteArray TVLLayoutSettings::inspectorSplitterState() const
{
    return storedBytes(*this, InspectorSplitterKey);
}

void TVLLayoutSettings::setInspectorSplitterState(const QByteArray &state)
{
    setValue(InspectorSplitterKey, state);
}

QByteArray TVLLayoutSettings::binderSplitterState() const
{
    return storedBytes(*this, BinderSplitterKey);
}

void TVLLayoutSettings::setBinderSplitterState(const QByteArray &state)
{
    setValue(BinderSplitterKey, state);
}
