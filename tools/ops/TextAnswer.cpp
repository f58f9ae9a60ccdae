#include "TextAnswer.h"

#include "MofText.h"

namespace {

const char kIndent[] = "    ";

void AppendAssignment(std::string& out, const std::string& name, const NVURZENTA20::TCIMValue& value,
                      const char* indent) {
    out += indent;
    out += name;
    out += " = ";
    AppendMofValue(out, value);
    out += ";\n";
}

}  // namespace

void TTextAnswer::Separate() {
    if (!fFirstBlock) fOut.Append('\n');
    fFirstBlock = false;
}

void TTextAnswer::Provider(const TProviderView& provider) {
    std::string& out = fOut.Text();
    out += provider.name + "\n";
    out += std::string(kIndent) + "module:      " + provider.module + "\n";
    out += std::string(kIndent) + "description: " + provider.description + "\n";
    out += std::string(kIndent) + "classes:    ";
    for (const std::string& cls : provider.classes) out += " " + cls;
    out += "\n";
    fOut.Pass();
}

void TTextAnswer::ClassSummary(const TClassSummary& summary) { ClassName(summary.name); }

void TTextAnswer::ClassName(const std::string& name) {
    fOut.Append(name);
    fOut.Append('\n');
    fOut.Pass();
}

void TTextAnswer::Class(const TClassView& cls) {
    Separate();
    AppendMofClass(fOut.Text(), cls);
    fOut.Pass();
}

void TTextAnswer::Instance(const TInstanceView& instance) {
    Separate();
    std::string& out = fOut.Text();
    out += "// ";
    out += *instance.path.text;
    out += "\ninstance of ";
    out += *instance.className;
    out += " {\n";
    for (const TPropertyView& property : *instance.properties) {
        AppendAssignment(out, *property.name, *property.value, kIndent);
    }
    out += "};\n";
    fOut.Pass();
}

void TTextAnswer::Path(const TPathView& path) {
    fOut.Append(*path.text);
    fOut.Append('\n');
    fOut.Pass();
}

void TTextAnswer::Method(const TMethodView& method) {
    std::string& out = fOut.Text();
    // The out parameters are the answer; the return value is shown only
    // when one reached the host.
    if (!method.returnValue.IsNull()) AppendAssignment(out, "ReturnValue", method.returnValue, "");
    for (const auto& parameter : method.outParameters) AppendAssignment(out, parameter.first, parameter.second, "");
    fOut.Pass();
}

void TTextAnswer::QualifierDecl(const NVURZENTA20::ICIMQualifierDecl& decl) {
    AppendMofQualifierDecl(fOut.Text(), decl);
    fOut.Pass();
}
