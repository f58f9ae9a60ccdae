#include "Commands.h"

#include <regex>
#include <stdexcept>

TCommandRun RunCommand(const std::vector<std::string>& argv, const std::vector<std::string>& environment) {
    return RunProgramIn(environment, argv);
}

TReadmeExample ReadReadmeExample(const std::string& readmePath) {
    const std::string text = ReadFile(readmePath);
    if (text.empty()) throw std::runtime_error("cannot read " + readmePath);
    static const std::regex marked("<!-- example ([a-z-]+)(?:: ([^ ]+))? -->\n```[a-z]*\n([^`]*)```");
    TReadmeExample example;
    for (std::sregex_iterator match(text.begin(), text.end(), marked), end; match != end; ++match) {
        const std::string kind = (*match)[1];
        const std::string name = (*match)[2];
        if (kind == "file") {
            example.files[name] = (*match)[3];
        } else {
            example.blocks[name.empty() ? kind : kind + ": " + name] = (*match)[3];
        }
    }
    return example;
}
