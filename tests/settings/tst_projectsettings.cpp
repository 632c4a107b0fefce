#include "SettingsFile.h"
#include "TestMain.h"

#include "TVLProjectSettings.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using HistoryGetter = QByteArray (TVLProjectSettings::*)() const;
using HistorySetter = void (TVLProjectSettings::*)(const QByteArray &);

} // namespace

Q_DECLARE_METATYPE(HistoryGetter)
Q_DECLARE_METATYPE(HistorySetter)

class TstProjectSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aProjectHasALayout();
    void theIgnoreListIsStored_data();
    void theIgnoreListIsStored();
    void anIgnoreListOfAnotherKindIsEmpty();
    void aHistoryIsStored_data();
    void aHistoryIsStored();
    void theBackupFlagOfOlderProjectsCanBeRemoved();
    void aLayoutIsTakenOutOfAProject();
};

void TstProjectSettings::aProjectHasALayout()
{
    const SettingsFile file;
    {
        TVLProjectSettings project(file.path());
        project.setName(u"Mine"_s);
        project.setWindowSize(QSize(10, 20), true);
        project.setValue(TVLSettings::TintBinderIcons, true);
    }
    const auto layout = file.open<TVLLayoutSettings>();
    QCOMPARE(layout->name(), u"Mine"_s);
    QCOMPARE(layout->windowMaximized(nullptr), true);
    QCOMPARE(layout->value(TVLSettings::TintBinderIcons), true);
}

void TstProjectSettings::theIgnoreListIsStored_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::newRow("empty") << QStringList();
    QTest::newRow("one") << QStringList(u"Gandalfish"_s);
    QTest::newRow("several") << QStringList{u"Zaphod"_s, u"d'Artagnan"_s, u"M\u00fcller"_s};
    QTest::newRow("hard ones") << QStringList{u"a, b"_s, u"@home"_s, u"\"x\""_s,
                                              u""_s,     u"true"_s,  u"\u4e2d\u6587"_s};
    QStringList many;
    for (int i = 0; i < 20000; ++i)
        many += u"word"_s + QString::number(i);
    QTest::newRow("many") << many;
}

void TstProjectSettings::theIgnoreListIsStored()
{
    QFETCH(QStringList, words);
    const SettingsFile file;
    {
        TVLProjectSettings project(file.path());
        QCOMPARE(project.ignoreList(), QStringList());
        project.setIgnoreList(words);
        QCOMPARE(project.ignoreList(), words);
        QCOMPARE(project.allKeys(), QStringList(u"ignoreList"_s));
    }
    QCOMPARE(file.storedValue(u"ignoreList"_s).toStringList(), words);
    QCOMPARE(file.open<TVLProjectSettings>()->ignoreList(), words);
}

void TstProjectSettings::anIgnoreListOfAnotherKindIsEmpty()
{
    for (const QByteArray &text :
         {QByteArray("@Size(1 2)"), QByteArray("@Invalid()"), QByteArray("@ByteArray(a)")}) {
        const SettingsFile file;
        file.write(iniText(u"ignoreList"_s, text));
        QCOMPARE(TVLProjectSettings(file.path()).ignoreList(), QStringList());
    }
}

void TstProjectSettings::aHistoryIsStored_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<HistoryGetter>("history");
    QTest::addColumn<HistorySetter>("setHistory");

    using P = TVLProjectSettings;
    QTest::newRow("first editor") << u"firstEditorHistory"_s
                                  << HistoryGetter(&P::firstEditorHistory)
                                  << HistorySetter(&P::setFirstEditorHistory);
    QTest::newRow("second editor")
        << u"secondEditorHistory"_s << HistoryGetter(&P::secondEditorHistory)
        << HistorySetter(&P::setSecondEditorHistory);
    QTest::newRow("binder") << u"binderHistory"_s << HistoryGetter(&P::binderHistory)
                            << HistorySetter(&P::setBinderHistory);
    QTest::newRow("full screen") << u"fullScreenHistory"_s << HistoryGetter(&P::fullScreenHistory)
                                 << HistorySetter(&P::setFullScreenHistory);
}

void TstProjectSettings::aHistoryIsStored()
{
    QFETCH(QString, key);
    QFETCH(HistoryGetter, history);
    QFETCH(HistorySetter, setHistory);
    const QByteArray bytes("\0\1\2\xfe\xff, ;=\n", 10);
    const SettingsFile file;
    {
        TVLProjectSettings project(file.path());
        QCOMPARE((project.*history)(), QByteArray());
        (project.*setHistory)(bytes);
        QCOMPARE((project.*history)(), bytes);
        QCOMPARE(project.allKeys(), QStringList(key));
    }
    QCOMPARE(file.storedValue(key), QVariant(bytes));
    QCOMPARE((*file.open<TVLProjectSettings>().*history)(), bytes);
    file.write(iniText(key, "word"));
    QCOMPARE((*file.open<TVLProjectSettings>().*history)(), QByteArray());
}

void TstProjectSettings::theBackupFlagOfOlderProjectsCanBeRemoved()
{
    const SettingsFile file;
    file.write("[General]\nexcludeFromAutomaticBackups=true\nshowInvisibles=true\n");
    {
        TVLProjectSettings project(file.path());
        const QString key = project.keyText(TVLSettings::ExcludeFromBackups);
        QCOMPARE(key, u"excludeFromAutomaticBackups"_s);
        QVERIFY(project.contains(key));
        QCOMPARE(project.value(TVLSettings::ExcludeFromBackups), true);
        project.remove(key);
        QVERIFY(!project.contains(key));
        QCOMPARE(project.value(TVLSettings::ExcludeFromBackups), false);
    }
    QCOMPARE(file.content(), iniText(u"showInvisibles"_s, "true"));
}

void TstProjectSettings::aLayoutIsTakenOutOfAProject()
{
    const SettingsFile file;
    const SettingsFile layoutFile;
    TVLProjectSettings project(file.path());
    project.setValue(TVLSettings::CardSize, 111);
    project.setPreview(QImage(2, 2, QImage::Format_Mono));
    QVERIFY(project.saveToFile(layoutFile.path()));
    const auto layout = layoutFile.open<TVLLayoutSettings>();
    QCOMPARE(layout->value(TVLSettings::CardSize), 111);
    QCOMPARE(layout->preview().size(), QSize(2, 2));
}

TVL_TEST(TstProjectSettings)

#include "tst_projectsettings.moc"
