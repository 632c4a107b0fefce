#include "TestMain.h"

#include "TVLConverters.h"
#include "TVLImportExportConfig.h"
#include "TVLTextTransform.h"

#include <QComboBox>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLFormat::Format;

QStringList itemsOf(const QComboBox &combo)
{
    QStringList items;
    for (int i = 0; i < combo.count(); ++i)
        items.append(u"%1 %2"_s.arg(combo.itemData(i).toInt()).arg(combo.itemText(i)));
    return items;
}

/** Lines of formats without those that can't be written here. */
QStringList withoutMissing(QStringList items)
{
    items.removeIf([](const QString &item) {
        const int number = item.section(u' ', 0, 0).toInt();
        return number >= TVLFormat::Odt && number <= TVLFormat::Docx
            && !TVLTextTransform::canExport(Format(number));
    });
    return items;
}

} // namespace

/** What a conversion front knows of formats. */
class TstTransformFormats : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsAreThoseOfTheConfiguration();
    void suffixesStandForTheirFormats();
    void someFormatsBecomeTexts();
    void extensionsComeInTheOrderOfTheTable();
    void filesAreCopiedOrConverted();
    void linksSurviveInSomeFormats_data();
    void linksSurviveInSomeFormats();
    void aComboBoxGetsTheFormats();
    void filtersAreSortedByDescription();
};

void TstTransformFormats::listsAreThoseOfTheConfiguration()
{
    const auto *config = TVLImportExportConfig::instance();
    const QList<Format> exported = TVLTextTransform::exportFormats();
    QCOMPARE(QSet<Format>(exported.begin(), exported.end()), config->exportFormats());
    QVERIFY(std::is_sorted(exported.begin(), exported.end()));
    const QList<Format> imported = TVLTextTransform::importFormats();
    QCOMPARE(QSet<Format>(imported.begin(), imported.end()), config->importFormats());
    QCOMPARE(TVLTextTransform::exportEngine(TVLFormat::Pdf), TVLImportExport::QtEngine);
    QCOMPARE(TVLTextTransform::importEngine(TVLFormat::Rtf), config->importEngine(TVLFormat::Rtf));
    QCOMPARE(TVLTextTransform::findEngine(TVLFormat::Docx, TVLFormat::Rtf),
             config->findEngine(TVLFormat::Docx, TVLFormat::Rtf));
}

void TstTransformFormats::suffixesStandForTheirFormats()
{
    QVERIFY(TVLTextTransform::canExport(u"rtf"_s));
    QVERIFY(TVLTextTransform::canImport(u"RTF"_s));
    QVERIFY(!TVLTextTransform::canExport(u"nothing"_s));
    QVERIFY(!TVLTextTransform::canImport(QString()));
}

void TstTransformFormats::someFormatsBecomeTexts()
{
    const QSet<int> texts = {3, 4, 5, 9, 10, 11, 31, 36, 39, 40};
    QList<Format> expected;
    for (int number = 0; number <= 50; ++number) {
        const auto format = Format(number);
        const bool isText = texts.contains(number) && TVLTextTransform::canImport(format);
        QVERIFY2(TVLTextTransform::canImportAsRtf(format) == isText,
                 QByteArray::number(number).constData());
        if (isText)
            expected.append(format);
    }
    QCOMPARE(TVLTextTransform::importAsRtfFormats(), expected);
}

void TstTransformFormats::extensionsComeInTheOrderOfTheTable()
{
    QStringList exported;
    QStringList imported;
    for (int i = 0; i < TVLFormat::formatsCount(); ++i) {
        if (TVLTextTransform::canExport(TVLFormat::formatAt(i)))
            exported.append(TVLFormat::formatExtension(i));
        if (TVLTextTransform::canImport(TVLFormat::formatAt(i)))
            imported.append(TVLFormat::formatExtension(i));
    }
    QVERIFY(exported.contains(u"fountain"_s));
    QCOMPARE(TVLTextTransform::exportExtensions(), exported);
    QCOMPARE(TVLTextTransform::importExtensions(), imported);
}

void TstTransformFormats::filesAreCopiedOrConverted()
{
    for (int number = 0; number <= 50; ++number) {
        const bool isListed = (number >= 12 && number <= 21) || (number >= 23 && number <= 36);
        const bool isKnown = number != 0 && number != 4;
        const bool isCopied = isListed || (isKnown && !TVLTextTransform::canExport(Format(number)));
        QVERIFY2(TVLTextTransform::exportViaCopy(Format(number)) == isCopied,
                 QByteArray::number(number).constData());
    }
}

void TstTransformFormats::linksSurviveInSomeFormats_data()
{
    QTest::addColumn<Format>("format");
    QTest::addColumn<bool>("areKept");

    for (const Format format : {TVLFormat::Html, TVLFormat::Xhtml, TVLFormat::EPub,
                                TVLFormat::Kindle, TVLFormat::PostScript})
        QTest::addRow("never in %d", format) << format << false;
    for (const Format format : {TVLFormat::NoFormat, TVLFormat::PlainText, TVLFormat::Rtf,
                                TVLFormat::Odt, TVLFormat::FinalDraft, TVLFormat::Mmd})
        QTest::addRow("always in %d", format) << format << true;
    const auto engine = &TVLTextTransform::exportEngine;
    QTest::newRow("Word by its engine")
        << TVLFormat::Doc << (engine(TVLFormat::Doc) == 7 || engine(TVLFormat::Doc) == 2);
    QTest::newRow("new Word by its engine") << TVLFormat::Docx << (engine(TVLFormat::Docx) == 2);
    QTest::newRow("PDF by its engine") << TVLFormat::Pdf << (engine(TVLFormat::Pdf) == 2);
}

void TstTransformFormats::linksSurviveInSomeFormats()
{
    QFETCH(Format, format);
    QTEST(TVLTextTransform::supportsTavelinorLinksExport(format), "areKept");
}

void TstTransformFormats::aComboBoxGetsTheFormats()
{
    QComboBox combo;
    combo.addItem(u"left over"_s);
    TVLTextTransform::setupFormats(&combo, false);
    const QStringList small = {u"1 Print"_s,
                               u"12 PDF (.pdf)"_s,
                               u"4 Rich Text Format (.rtf - Word compatible)"_s,
                               u"3 Plain Text (.txt)"_s,
                               u"10 Word Document (.doc)"_s,
                               u"11 Word Document (.docx)"_s,
                               u"9 OpenDocument Format (.odt)"_s,
                               u"5 Web Page (.html)"_s,
                               u"6 eXtensible Web Page (.xhtml)"_s,
                               u"13 PostScript (.ps)"_s,
                               u"31 Final Draft (.fdx)"_s};
    QCOMPARE(itemsOf(combo), withoutMissing(small));

    TVLTextTransform::setupFormats(&combo, true);
    QStringList full = small;
    full.insert(1, u"2 Preview"_s);
    full += {u"7 ePub eBook (.epub)"_s,
             u"8 Kindle(Mobi) Book (.mobi)"_s,
             u"36 MultiMarkdown (.mmd)"_s,
             u"32 MultiMarkdown to Web Page (.html)"_s,
             u"35 MultiMarkdown to OpenDocument Flat XML (.fodt)"_s,
             u"34 MultiMarkdown to Outline Processor Markup Language (.opml)"_s,
             u"33 MultiMarkdown to Latex (.tex)"_s};
    QCOMPARE(itemsOf(combo), withoutMissing(full));
    TVLTextTransform::setupFormats(nullptr, true);
}

void TstTransformFormats::filtersAreSortedByDescription()
{
    const QList<Format> formats = {TVLFormat::Html, TVLFormat::Png, TVLFormat::PlainText,
                                   TVLFormat::Bmp};
    const QStringList filters = TVLTextTransform::toFilter(formats, false);
    QCOMPARE(filters,
             QStringList({u"Image (*.bmp *.png)"_s, u"Plain Text (*.txt *.text)"_s,
                          u"Web Page (*.html *.htm)"_s}));
    QCOMPARE(TVLTextTransform::toFilter(formats, true),
             QStringList(u"All Supported (*.txt *.text *.html *.htm *.bmp *.png)"_s) + filters);
    QCOMPARE(TVLTextTransform::importFileFilter(true),
             TVLTextTransform::toFilter(TVLTextTransform::importFormats(), true));
}

TVL_TEST(TstTransformFormats)
#include "tst_transformformats.moc"
