#include "ScreenplayDescription.h"
#include "TestMain.h"

#include "TVLCoreUtil.h"
#include "TvlFountain.h"

#include <QDir>
#include <QTest>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

QDir casesDirectory()
{
    return QDir(QStringLiteral(TVL_FOUNTAIN_CASES));
}

QStringList caseNames()
{
    return casesDirectory().entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
}

QString fileOfCase(const QString &name, const QString &fileName)
{
    return QString::fromUtf8(
        TVLCoreUtil::ReadBinaryFile(casesDirectory().filePath(name + u'/' + fileName)));
}

} // namespace

/** One folder for each rule of Fountain: a text and what it reads as. */
class TstFountainCases : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thereIsACaseForEachRule();
    void aTextReadsAsItsDescriptionSays_data();
    void aTextReadsAsItsDescriptionSays();
    void aTextReadsTheSameOnceItWasWritten_data();
    void aTextReadsTheSameOnceItWasWritten();
};

void TstFountainCases::thereIsACaseForEachRule()
{
    constexpr qsizetype Fewest = 120;
    QVERIFY(caseNames().size() >= Fewest);
}

void TstFountainCases::aTextReadsAsItsDescriptionSays_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : caseNames())
        QTest::newRow(qPrintable(name)) << name;
}

void TstFountainCases::aTextReadsAsItsDescriptionSays()
{
    QFETCH(QString, name);
    QCOMPARE(describeFountain(fileOfCase(name, u"origin.fountain"_s)),
             fileOfCase(name, u"expected"_s));
}

void TstFountainCases::aTextReadsTheSameOnceItWasWritten_data()
{
    aTextReadsAsItsDescriptionSays_data();
}

void TstFountainCases::aTextReadsTheSameOnceItWasWritten()
{
    QFETCH(QString, name);
    QTextDocument document;
    QVERIFY(TvlFountain::parseText(fileOfCase(name, u"origin.fountain"_s), &document, {}));
    QString expected = fileOfCase(name, u"expected"_s);
    // A document can't be without a paragraph; written, that is one of action.
    expected.replace(u"-: "_s, u"Action: "_s);
    QCOMPARE(describeFountain(TvlFountain::toText(&document, {})), expected);
}

TVL_TEST(TstFountainCases)
#include "tst_fountaincases.moc"
