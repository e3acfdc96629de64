// The process under the habits of a language with decimal commas.
#pragma once

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <string>

class CCommaLocale {
public:
    // A locale of the machine, or else one made for the test; a machine may have neither.
    CCommaLocale() : m_IsSet(Set() || (Make() && Set())) {}
    ~CCommaLocale() { std::setlocale(LC_ALL, "C"); }
    CCommaLocale(const CCommaLocale&) = delete;
    CCommaLocale& operator=(const CCommaLocale&) = delete;

    bool IsSet() const { return m_IsSet; }

private:
    static bool Set() {
        return std::setlocale(LC_ALL, "de_DE.UTF-8") &&
               std::string(std::localeconv()->decimal_point) == ",";
    }
    static bool Make() {
        const std::string folder = testing::TempDir() + "comma_locale";
        const std::string make = "mkdir -p " + folder + " && localedef -c -i de_DE -f UTF-8 " +
                                 folder + "/de_DE.UTF-8 >/dev/null 2>&1";
        return std::system(make.c_str()) == 0 && setenv("LOCPATH", folder.c_str(), 1) == 0;
    }

    bool m_IsSet;
};
