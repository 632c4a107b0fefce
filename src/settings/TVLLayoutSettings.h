#pragma once

#include "TVL.h"
#include "TVLSettings.h"

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QSize>

class QWidget;

/**
 * The settings of a window layout: how the views of a project look, and where the window is.
 *
 * A saved layout has an ini file of its own. The layout in use lies among the project's settings.
 */
class TVL_EXPORT TVLLayoutSettings : public TVLSettings
{
    Q_OBJECT

public:
    /** Settings of the ini file at @p path, which is read at once if it is there, and made with the
     * first value that is stored. */
    explicit TVLLayoutSettings(const QString &path, QObject *parent = nullptr);
    ~TVLLayoutSettings() override;
    Q_DISABLE_COPY_MOVE(TVLLayoutSettings)

    /** @name Defaults and keys of the settings that a layout has; those of TVLSettings for others
     * @{ */
    using TVLSettings::defaultValue;
    [[nodiscard]] bool defaultValue(FlagSetting setting) const override;
    [[nodiscard]] int defaultValue(IntSetting setting) const override;
    [[nodiscard]] QList<int> defaultValue(IntListSetting setting) const override;

    using TVLSettings::keyText;
    [[nodiscard]] QString keyText(FlagSetting setting) const override;
    [[nodiscard]] QString keyText(IntSetting setting) const override;
    [[nodiscard]] QString keyText(IntListSetting setting) const override;
    /** @} */

    /** @name The layout in the user's list @{ */
    [[nodiscard]] QString name() const;
    void setName(const QString &name);
    /** A small picture of the window; null for none. */
    [[nodiscard]] QImage preview() const;
    void setPreview(const QImage &preview);
    /** @} */

    /** @name The window. Without stored values it fits the widget's screen, or for a null widget
     * the primary one @{ */
    /** The stored position and size; of each that isn't stored or is no window's, the default. */
    [[nodiscard]] QRect windowGeometry(const QWidget *widget) const;
    void setWindowPosition(const QPoint &position);
    void setWindowSize(const QSize &size, bool maximized);
    /** As it was stored; without that, whether a low screen asks for it. */
    [[nodiscard]] bool windowMaximized(const QWidget *widget) const;
    /** Which parts of the window are shown; the bits are the application's. */
    [[nodiscard]] int visibilityFlags(const QWidget *widget) const;
    void setVisibilityFlags(int flags);
    /** @} */

    /** @name A window on a screen, of which @p available is free of task bars and the like @{ */
    [[nodiscard]] static QRect defaultMainWindowGeometry(const QWidget *widget);
    /** Three quarters of a small screen or half of a large one, in its middle. */
    [[nodiscard]] static QRect defaultMainWindowGeometry(const QRect &available);
    /** On a low screen. */
    [[nodiscard]] static bool defaultWindowMaximized(const QRect &available);
    /** Less is shown on a low screen. */
    [[nodiscard]] static int defaultVisibilityFlags(const QRect &available);
    /** @} */

    /** @name Binder, inspector and splitters @{ */
    [[nodiscard]] TVL::AffectType binderAffectsType() const;
    void setBinderAffectsType(TVL::AffectType type);
    [[nodiscard]] TVL::InspectorMode inspectorMode() const;
    void setInspectorMode(TVL::InspectorMode mode);
    /** The page that the user chose last; inspectorMode() also changes with the selection. */
    [[nodiscard]] TVL::InspectorMode userSelectedInspectorMode() const;
    void setUserSelectedInspectorMode(TVL::InspectorMode mode);
    [[nodiscard]] QByteArray editorSplitterState() const;
    void setEditorSplitterState(const QByteArray &state);
    [[nodiscard]] QByteArray inspectorSplitterState() const;
    void setInspectorSplitterState(const QByteArray &state);
    [[nodiscard]] QByteArray binderSplitterState() const;
    void setBinderSplitterState(const QByteArray &state);
    /** @} */
};
