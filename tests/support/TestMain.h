#pragma once

#include <QObject>

#include <functional>
#include <memory>

/**
 * Runs a test object in a QApplication that touches nothing of the user's: options and standard
 * locations lie in a temporary folder, and there need be no display.
 */
int tvlRunTest(int argc, char **argv, const std::function<std::unique_ptr<QObject>()> &makeTest);

/** The main function of a test program with one test class. */
#define TVL_TEST_MAIN(TestClass)                                                                   \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        return tvlRunTest(argc, argv, [] { return std::make_unique<TestClass>(); });               \
    }
