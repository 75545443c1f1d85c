/// The system's files with a fault at one step: for tests of what is left behind.
#pragma once

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/FileOperations.h"

namespace MXF::Zelm::Test {

/// The process ended here.
struct Killed {};

/// The system's files up to a step: opening, writing, synchronising, closing, renaming, removing. That step
/// fails, half done when it is a write, and so do those behind it unless the fault passes.
class FaultyOperations : public MXFIO::FileOperations {
public:
    enum class Fault {
        Kill,     ///< the process ends: nothing happens any more
        FullOnce, ///< no space for one write
        Full,     ///< no space from one write on
    };

    FaultyOperations(Fault fault, std::size_t step) : fault_(fault), step_(step) {}

    Templates::auto_ptr<MXFIO::WritableFile> open(std::string const& name, Mode mode) override {
        step();
        return std::make_unique<File>(*this, FileOperations::open(name, mode));
    }
    void rename(std::string const& from, std::string const& to, bool replace) override {
        step();
        FileOperations::rename(from, to, replace);
    }
    void remove(std::string const& name) override {
        step();
        FileOperations::remove(name);
    }
    void synchronizeEntry(std::string const& name) override {
        step();
        FileOperations::synchronizeEntry(name);
    }

    bool failed() const { return failed_; }

private:
    class File : public MXFIO::WritableFile {
    public:
        File(FaultyOperations& operations, Templates::auto_ptr<MXFIO::WritableFile> file)
            : operations_(operations), file_(std::move(file)) {}

        void writeAt(std::uint64_t position, const unsigned char* bytes, std::uint64_t size) override {
            if (operations_.dies() || operations_.isFull()) {
                if (!operations_.failedBefore_)
                    file_->writeAt(position, bytes, size / 2);
                operations_.end();
            }
            file_->writeAt(position, bytes, size);
        }
        void truncate(std::uint64_t size) override {
            operations_.step();
            file_->truncate(size);
        }
        void synchronize() override {
            operations_.step();
            file_->synchronize();
        }
        void close() override {
            operations_.step();
            file_->close();
        }

    private:
        FaultyOperations& operations_;
        Templates::auto_ptr<MXFIO::WritableFile> file_;
    };

    bool dies() { return fault_ == Fault::Kill && due(); }
    bool isFull() { return fault_ != Fault::Kill && due(); }

    bool due() {
        failedBefore_ = failed_;
        bool const isDue = fault_ == Fault::FullOnce ? count_ == step_ : count_ >= step_;
        ++count_;
        failed_ = failed_ || isDue;
        return isDue;
    }

    [[noreturn]] void end() const {
        if (fault_ == Fault::Kill)
            throw Killed();
        throw Exceptions::SystemError("disk", "cannot write", 28);
    }

    void step() {
        if (dies())
            end();
    }

    Fault fault_;
    std::size_t step_;
    std::size_t count_ = 0;
    bool failed_ = false;
    bool failedBefore_ = false;
};

} // namespace MXF::Zelm::Test
