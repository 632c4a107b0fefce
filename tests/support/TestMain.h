#pragma once

#include <QObject>

#include <memory>

/**
 * A test class of a program of several. It goes by its name in small letters with an underscore,
 * TstItemMoves as tst_itemmoves: by that name the program is called, or that is its first argument.
 */
class RegisteredTest
{
public:
    using Make = std::unique_ptr<QObject> (*)();
    using Prepare = void (*)();

    RegisteredTest(const char *className, Make make, Prepare prepare);
};

/** Registers a test class; at the end of its source. */
#define TVL_TEST(TestClass) TVL_TEST_PREPARED(TestClass, nullptr)

/** Registers a test class that needs a process prepared for it: @p prepare is called before there
 * are any threads, and only when this class is run. */
#define TVL_TEST_PREPARED(TestClass, prepare)                                                      \
    static const RegisteredTest registered##TestClass(                                             \
        #TestClass, []() -> std::unique_ptr<QObject> { return std::make_unique<TestClass>(); },    \
        prepare);
