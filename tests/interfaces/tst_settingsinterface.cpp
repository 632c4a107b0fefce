#include "Callable.h"
#include "TestMain.h"

#include "TVLProjectSettings.h"

#include <QWidget>

using namespace Qt::StringLiterals;

/** What a program can call of the settings of layouts and projects. */
class TstSettingsInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settingsByNumber();
    void settingsByKey();
    void theLayoutInTheList();
    void theWindow();
    void binderAndInspector();
    void splitters();
    void theProject();
};

void TstSettingsInterface::settingsByNumber()
{
    areCallable([](TVLProjectSettings &settings) {
        gives<bool>(settings.value(TVLSettings::FlagSetting(88)));
        gives<int>(settings.value(TVLSettings::IntSetting(15)));
        gives<QString>(settings.value(TVLSettings::StringSetting(48)));
        gives<QStringList>(settings.value(TVLSettings::AutoCorrectionWords));
        gives<QList<int>>(settings.value(TVLSettings::IntListSetting(2)));
        gives<QByteArray>(settings.value(TVLSettings::FreeformPositions));
        gives<bool>(settings.defaultValue(TVLSettings::FlagSetting(88)));
        gives<int>(settings.defaultValue(TVLSettings::IntSetting(15)));
        gives<QString>(settings.defaultValue(TVLSettings::StringSetting(48)));
        gives<QStringList>(settings.defaultValue(TVLSettings::AutoCorrectionWords));
        gives<QList<int>>(settings.defaultValue(TVLSettings::IntListSetting(2)));
        gives<QByteArray>(settings.defaultValue(TVLSettings::ProjectReplacements));
        gives<QString>(settings.keyText(TVLSettings::FlagSetting(88)));
        gives<QString>(settings.keyText(TVLSettings::IntSetting(15)));
        gives<QString>(settings.keyText(TVLSettings::StringSetting(48)));
        gives<QString>(settings.keyText(TVLSettings::IntListSetting(2)));
    });
}

void TstSettingsInterface::settingsByKey()
{
    areCallable([](TVLProjectSettings &settings) {
        settings.setValue(u"layoutName"_s, QVariant());
        gives<QVariant>(settings.value(u"layoutName"_s, QVariant()));
        settings.sync();
        QSettings &base = settings;
        gives<QSettings::Status>(base.status());
    });
}

void TstSettingsInterface::theLayoutInTheList()
{
    areCallable([](const QString &path, QObject *parent) {
        TVLLayoutSettings layout(path, parent);
        gives<QString>(layout.name());
        layout.setName(u"a"_s);
        gives<QImage>(layout.preview());
        layout.setPreview(QImage());
    });
}

void TstSettingsInterface::theWindow()
{
    areCallable([](TVLLayoutSettings &layout, QWidget *widget) {
        gives<QRect>(layout.windowGeometry(widget));
        layout.setWindowPosition(QPoint());
        layout.setWindowSize(QSize(), true);
        gives<bool>(layout.windowMaximized(widget));
        gives<int>(layout.visibilityFlags(widget));
        layout.setVisibilityFlags(61708);
        gives<QRect>(layout.defaultMainWindowGeometry(widget));
    });
}

void TstSettingsInterface::binderAndInspector()
{
    areCallable([](TVLLayoutSettings &layout) {
        gives<TVL::AffectType>(layout.binderAffectsType());
        layout.setBinderAffectsType(TVL::AffectType(1));
        gives<TVL::InspectorMode>(layout.inspectorMode());
        layout.setInspectorMode(TVL::InspectorMode(1));
        gives<TVL::InspectorMode>(layout.userSelectedInspectorMode());
        layout.setUserSelectedInspectorMode(TVL::InspectorMode(1));
    });
}

void TstSettingsInterface::splitters()
{
    areCallable([](TVLLayoutSettings &layout) {
        gives<QByteArray>(layout.editorSplitterState());
        gives<QByteArray>(layout.inspectorSplitterState());
        gives<QByteArray>(layout.binderSplitterState());
        layout.setEditorSplitterState(QByteArray());
        layout.setInspectorSplitterState(QByteArray());
        layout.setBinderSplitterState(QByteArray());
    });
}

void TstSettingsInterface::theProject()
{
    areCallable([](const QString &path, QObject *parent) {
        TVLProjectSettings settings(path, parent);
        gives<QStringList>(settings.ignoreList());
        settings.setIgnoreList(QStringList());
        gives<QByteArray>(settings.firstEditorHistory());
        gives<QByteArray>(settings.secondEditorHistory());
        gives<QByteArray>(settings.binderHistory());
        gives<QByteArray>(settings.fullScreenHistory());
        settings.setFirstEditorHistory(QByteArray());
        settings.setSecondEditorHistory(QByteArray());
        settings.setBinderHistory(QByteArray());
        settings.setFullScreenHistory(QByteArray());
    });
}

TVL_TEST(TstSettingsInterface)
#include "tst_settingsinterface.moc"
