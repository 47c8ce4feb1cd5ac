#include "vexstore.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>

namespace
{
constexpr const char* FOOTER =
    "Exit status: 0 done; 1 differences, faults or losses were found; 2 misused; 3 a file cannot "
    "be opened or read.";

/// What the command line asks for.
struct Request
{
    std::string file;
    std::string other; // the second file of diff, the target of recover, the record of show
    bool isDryRun = false;
};

CLI::App* Add(CLI::App& app, Request& request, const char* name, const char* help, const char* other = nullptr)
{
    CLI::App* const command = app.add_subcommand(name, help);
    command->add_option("FILE", request.file, "a store")->required();
    if (other != nullptr) {
        command->add_option(other, request.other)->required();
    }
    return command;
}

int Run(const std::string& command, const Request& request)
{
    const bool isDamaged = command == "check" || command == "recover";
    sql_RecordFile file(request.file, isDamaged ? sql_RecordFile::Mode::SALVAGE : sql_RecordFile::Mode::READ_ONLY);
    if (command == "recover") {
        return Recover(file, request.other);
    }
    file.BeginRead(); // one view of the file, whoever writes to it meanwhile
    if (command == "ls") {
        return List(file);
    }
    if (command == "show") {
        return Show(file, request.other);
    }
    if (command == "export") {
        return Export(file);
    }
    if (command == "check") {
        return Check(file);
    }
    if (command == "upgrade") {
        return Upgrade(file);
    }
    sql_RecordFile other(request.other, sql_RecordFile::Mode::READ_ONLY);
    other.BeginRead();
    return Diff(file, other);
}
} // namespace

int main(int argc, char** argv)
{
    CLI::App app("Looks into the files that models are stored in. Nothing is written to them.", "vexstore");
    app.footer(FOOTER);
    app.require_subcommand(1);
    app.allow_windows_style_options(false); // a file name may begin with a slash
    Request request;
    Add(app, request, "ls", "the tree of records, with class, version and size");
    Add(app, request, "show", "one record with its values", "RECORD");
    Add(app, request, "export", "everything, as JSON");
    Add(app, request, "diff", "what differs between two stores", "OTHER");
    Add(app, request, "check", "pages, checksums, references and lengths");
    Add(app, request, "recover", "takes what is sound into a new file, and says what is lost", "TARGET");
    Add(app, request, "upgrade", "what a newer program would convert")
        ->add_flag("--dry-run", request.isDryRun, "only say it; there is no other way yet")
        ->required();
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? DONE : MISUSED;
    }
    try {
        const int status = Run(app.get_subcommands().front()->get_name(), request);
        std::cout.flush();
        if (!std::cout) {
            std::cerr << "vexstore: what it says cannot be written\n";
            return UNREADABLE;
        }
        return status;
    } catch (const std::exception& failure) {
        std::cout.flush();
        std::cerr << "vexstore: " << Printable(failure.what()) << '\n';
        return UNREADABLE;
    }
}
