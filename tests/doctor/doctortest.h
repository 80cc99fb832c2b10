#ifndef VESK_TESTS_DOCTOR_DOCTORTEST_H
#define VESK_TESTS_DOCTOR_DOCTORTEST_H

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/files.h"

namespace vesk::test {

namespace fs = std::filesystem;

/// What the doctor has said.
struct Diagnosis {
    int status = -1;
    std::string text; ///< one JSON object a line
};

/// A way to spoil the folder, and words that the doctor has to say about it.
struct Defect {
    std::function<void()> spoil;
    const char* verdict;
    const char* check;
    const char* found;
    const char* remedy;
};

/// A game's folder without a fault, for the case's dev backend, and the doctor inside this process.
class DoctorTest : public ::testing::Test {
protected:
    DoctorTest();

    /// Puts back everything that a test may have spoiled.
    void heal() const;
    /// Puts a line into VESKConfig.ini in the place of the one for the key, which is the line's own
    /// unless told; an empty line removes that one.
    void setLine(const std::string& line, std::string key = {}) const;
    void write(const char* name, const std::string& bytes) const;
    void copy(const char* from, const char* to) const;

    Diagnosis diagnose(bool offline = true) const;
    /// Spoils, lets the doctor look and heals, one defect after the other.
    void expectEach(const std::vector<Defect>& defects, bool offline = true) const;

    const fs::path mFolder = environment("VESK_TEST_FOLDER");
    const std::string mUrl = environment("VESK_TEST_BACKEND_URL");

private:
    std::string mTrust;
};

} // namespace vesk::test

#endif
