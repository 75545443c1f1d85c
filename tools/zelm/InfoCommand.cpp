/// `zelm info`: what a person wants to know first.
#include "Faults.h"
#include "InfoReport.h"

#include <iostream>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

class InfoCommand : public Command {
public:
    void declare(CLI::App& parser) override {
        parser.add_option("FILE", files_, "The files")->required();
        options_.declare(parser);
    }

    ExitStatus run() override {
        dictionary_ = loadDictionary(options_.dictionaries);
        Json report = jsonReport();
        report["files"] = Json::array();
        ExitStatus worst = Done;
        for (std::size_t i = 0; i < files_.size(); ++i) {
            if (i != 0 && !options_.json)
                std::cout << "\n";
            worst = std::max(worst, show(files_[i], report["files"]));
        }
        if (options_.json)
            print(report);
        return worst;
    }

private:
    ExitStatus show(std::string const& file, Json& list) {
        try {
            Input input(file, dictionary_);
            FileInfo const info = gatherInfo(input);
            if (options_.json)
                list.push_back(infoJson(info));
            else
                printInfoText(info);
            for (auto const& fault : info.faults)
                reportFault(file, fault.message, fault.offset);
            return info.faults.empty() ? Done : NotMXF;
        } catch (Exceptions::BaseException const& failure) {
            if (options_.json)
                list.push_back({{"file", file}, {"fault", faultText(failure.message(), failure.offset())}});
            return reportFault(file, failure);
        }
    }

    std::vector<std::string> files_;
    ReportOptions options_;
    SharedDictionary dictionary_;
};

} // namespace

std::unique_ptr<Command> makeInfoCommand() { return std::make_unique<InfoCommand>(); }

} // namespace Zelm
