/// Files of essence that nobody knows, and what zelm rewrap and join make of them.
#pragma once

#include "support/FakeAnalyzer.h"
#include "support/Files.h"
#include "support/Program.h"
#include "support/WrittenFile.h"

namespace MXF::Zelm::Test {

FakeEssence pictureEssence(std::size_t count);

/// I0 P3 B1 B2, again and again.
FakeEssence reorderedEssence(std::size_t groups);

/// A picture and two sounds that no document describes, a set that no dictionary has, a generic stream.
Bytes strangeFile(FakeEssence const& picture, Templates::Rational<int> const& rate = {25, 1});

/// A file on disk, and what is made of it.
class Rewrapped {
public:
    explicit Rewrapped(Bytes const& bytes) { writeFile(in(), bytes); }

    std::string in() const { return folder_.file("in.mxf"); }
    std::string out() const { return folder_.file("out.mxf"); }

    ProgramRun run(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"-o", out()});
        return runZelm(arguments);
    }
    Bytes outBytes() const { return readFile(out()); }
    TemporaryFolder const& folder() const { return folder_; }

private:
    TemporaryFolder folder_;
};

/// The bytes of an element, edit unit by edit unit.
std::vector<Bytes> unitsOf(OpenFile& file, std::size_t element, std::size_t container = 0);

std::vector<std::uint8_t> flagsOf(OpenFile& file);
bool contains(Bytes const& bytes, Bytes const& part);

/// The lengths of all tracks, "-" before an origin.
std::string lengthsOf(OpenFile& file);

} // namespace MXF::Zelm::Test
