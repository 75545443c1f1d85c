/// `zelm dump`: the header metadata of one partition, as a tree or as JSON.
#include "DumpReport.h"
#include "Faults.h"
#include "Frameworks.h"
#include "MetadataChoice.h"

namespace Zelm {

using namespace MXF::Zelm;

namespace {

class DumpCommand : public Command {
public:
    void declare(CLI::App& parser) override {
        parser.add_option("FILE", file_, "The file")->required();
        parser
            .add_option("--partition", partition_,
                        "Whose metadata: a partition's number from 0 in file order, header, footer, or final "
                        "(the partition that a reader is to use)")
            ->type_name("N|header|footer|final")
            ->capture_default_str();
        parser.add_flag("--frameworks", frameworks_,
                        "Show the descriptive metadata alone: what is said about which stretch of which "
                        "package");
        options_.declare(parser);
    }

    ExitStatus run() override {
        auto const dictionary = loadDictionary(options_.dictionaries);
        Input input(file_, dictionary);
        DumpReport report{file_, nullptr, nullptr, {}};
        ExitStatus status = Done;
        try {
            auto const choice = choosePartition(input, partition_);
            report.partition = choice.partition;
            report.faults = choice.faults;
            report.metadata = choice.partition->metadata();
        } catch (Exceptions::InvalidValue const& failure) {
            reportFault(file_, failure.message());
            return WrongUse;
        } catch (Exceptions::SystemError const&) {
            throw;
        } catch (Exceptions::BaseException const& failure) {
            report.faults.push_back({failure.offset(), failure.message()});
        }
        if (report.metadata)
            report.faults.insert(report.faults.end(), report.metadata->faults().begin(),
                                 report.metadata->faults().end());
        show(report);
        for (auto const& fault : report.faults) {
            reportFault(file_, fault.message, fault.offset);
            status = NotMXF;
        }
        return status;
    }

private:
    void show(DumpReport const& report) const {
        if (frameworks_) {
            auto const found = report.metadata ? gatherFrameworks(*report.metadata) : FrameworkReport();
            if (options_.json)
                printFrameworksJson(file_, found);
            else
                printFrameworksText(found);
        } else if (options_.json) {
            printDumpJson(report);
        } else {
            printDumpText(report);
        }
    }

    std::string file_;
    std::string partition_ = "final";
    bool frameworks_ = false;
    ReportOptions options_;
};

} // namespace

std::unique_ptr<Command> makeDumpCommand() { return std::make_unique<DumpCommand>(); }

} // namespace Zelm
