// The command line of cairn-host: sub-commands, their options, and the exit status.
#include "cairn-host/Controls.h"
#include "cairn-host/Demo.h"
#include "cairn-host/Equaliser.h"
#include "cairn-host/Formula.h"
#include "cairn-host/Interrupt.h"
#include "cairn-host/Module.h"
#include "cairn-host/ModuleReport.h"
#include "cairn-host/ParameterList.h"
#include "cairn-host/Render.h"
#include "cairn-host/Response.h"
#include "cairn-host/Text.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <tuple>
#include <unistd.h>

namespace {

using namespace CairnHost;

enum EExitStatus : int { Done = 0, InputAtFault = 1, Usage = 2 };

int Complain(const SFault& fault) {
    std::cerr << "cairn-host: " << OneLine(fault.m_Text) << '\n';
    return InputAtFault;
}

// The text goes out whole, or it is a failure: a full disk must not pass for a short list.
int Print(const std::string& text) {
    std::cout << text << std::flush;
    return std::cout ? Done : Complain({"standard output: can't be written"});
}

int RunRender(const SRenderOptions& options, bool quiet) {
    CProgress progress(!quiet && ::isatty(STDERR_FILENO) ? &std::cerr : nullptr);
    const TResult<SRenderReport> report = Render(options, progress);
    progress.Finish();
    if (!report) {
        FollowInterrupt();
        return Complain(report.GetFault());
    }
    if (!quiet) {
        for (const std::string& note : report->m_Notes)
            std::cerr << "cairn-host: note: " << OneLine(note) << '\n';
    }
    return Done;
}

int RunParams(bool json) {
    const CEqualiser equaliser;
    const CParameterTable table = DescribeControls(equaliser);
    return Print(json ? ListParametersAsJson(table) : ListParameters(table));
}

int RunResponse(const SResponseOptions& options) {
    const CStatus status = WriteResponse(options);
    return status ? Done : Complain(status.GetFault());
}

int RunFormula(const SFormulaOptions& options) {
    const TResult<SFormulaAnswer> answer = EvaluateFormula(options);
    if (!answer)
        return Complain(answer.GetFault());
    if (const int status = Print(answer->m_Text); status != Done)
        return status;
    for (const std::string& note : answer->m_Notes)
        std::cerr << "cairn-host: note: " << OneLine(note) << '\n';
    return Done;
}

int RunReport(const std::string& path, TResult<std::string> (*report)(const CModule& module)) {
    CModule module;
    if (CStatus status = module.Load(path); !status)
        return Complain(status.GetFault());
    const TResult<std::string> text = report(module);
    return text ? Print(*text) : Complain(text.GetFault());
}

int RunPresets(const std::string& path, bool json) {
    return RunReport(
        path, json ? [](const CModule& module) { return ListPresets(module, true); }
                   : [](const CModule& module) { return ListPresets(module, false); });
}

int RunDemonstration(const std::string& folder, const std::string& module) {
    const TResult<std::string> told = RunDemo(folder, module);
    if (!told) {
        FollowInterrupt();
        return Complain(told.GetFault());
    }
    return Print(*told);
}

// An empty text has nothing that a message could name.
std::string CheckNotEmpty(const std::string& path) {
    return path.empty() ? "a text that isn't empty is expected" : "";
}

void AddSettings(CLI::App& command, std::vector<std::string>& settings) {
    command
        .add_option("--set", settings,
                    "Set a parameter, by name or index, such as \"Mid (1)=+6\"; repeatable")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
}

void AddPath(CLI::App& command, const char* option, std::string& path, const char* type,
             const char* help) {
    command.add_option(option, path, help)->type_name(type)->check(CheckNotEmpty);
}

void AddModule(CLI::App& command, std::string& path) {
    AddPath(command, "--module", path, "FILE.so",
            "The plug-in's module; the one that comes with the program when not given");
}

void AddPluginOptions(CLI::App& command, SRenderOptions& render) {
    AddModule(command, render.m_Module);
    AddPath(command, "--midi", render.m_Midi, "FILE.mid",
            "MIDI that the plug-in gets, at the file's own tempo");
    command
        .add_option("--midi-map", render.m_MidiMaps,
                    "Let a MIDI controller move a parameter, such as \"Mid (1)=cc:7,max:+6\"; its "
                    "range is then that of automation, too; repeatable")
        ->type_name("NAME=cc:N[,channel:N][,min:VALUE][,max:VALUE][,curve:NAME]")
        ->allow_extra_args(false);
    AddPath(command, "--midi-out", render.m_MidiOut, "FILE.mid",
            "File to write: MIDI that the plug-in sends");
    AddPath(command, "--preset", render.m_Preset, "FILE.preset",
            "Preset to load, before the settings");
    AddPath(command, "--save-preset", render.m_SavePreset, "FILE.preset",
            "File to write: a preset of the values at the end");
    AddPath(command, "--state-in", render.m_StateIn, "FILE",
            "State to load, before the preset; as --state-out writes it");
    AddPath(command, "--state-out", render.m_StateOut, "FILE",
            "File to write: the plug-in's whole state at the end, as a session holds it");
    command
        .add_option("--tempo", render.m_Tempo,
                    "Of the time line that the plug-in sees, in quarter notes a minute")
        ->type_name("BPM")
        ->capture_default_str();
    command.add_option("--meter", render.m_Meter, "Of the same time line")
        ->type_name("N/M")
        ->capture_default_str();
}

} // namespace

int main(int argc, char** argv) {
    IgnoreWriteSignals();
    CLI::App app("Runs the three-band dual-channel equaliser on audio files.", "cairn-host");
    app.set_version_flag("--version", "cairn-host " CAIRN_VERSION);
    app.require_subcommand(1);

    SRenderOptions render;
    bool quiet = false;
    CLI::App* renderCommand = app.add_subcommand("render", "Equalise an audio file");
    renderCommand->add_option("INPUT", render.m_Input, "Audio file of one or two channels")
        ->type_name("FILE")
        ->check(CheckNotEmpty)
        ->required();
    renderCommand
        ->add_option("OUTPUT", render.m_Output,
                     "Two-channel file to write: .wav, .flac, .aiff or .ogg; can be INPUT")
        ->type_name("FILE")
        ->check(CheckNotEmpty)
        ->required();
    AddSettings(*renderCommand, render.m_Settings);
    AddPath(*renderCommand, "--automation", render.m_Automation, "FILE.csv",
            "Changes over time, as lines of frame,parameter,value under that header");
    renderCommand
        ->add_option("--block-size", render.m_BlockSizes,
                     "Frames in a block; of several sizes each is used in turn")
        ->type_name("N[,N...]")
        ->capture_default_str();
    renderCommand->add_option("--tail", render.m_TailSeconds, "Silence to render behind the end")
        ->type_name("SECONDS");
    renderCommand
        ->add_option("--subtype", render.m_Subtype,
                     "Sample format; the best that the file can hold when not given")
        ->type_name("float|pcm24|pcm16");
    AddPluginOptions(*renderCommand, render);
    renderCommand->add_flag("--quiet", quiet, "No progress bar and no notes");

    bool json = false;
    CLI::App* paramsCommand = app.add_subcommand("params", "List the parameters");
    paramsCommand->add_flag("--json", json, "As JSON");

    SResponseOptions response;
    CLI::App* responseCommand =
        app.add_subcommand("response", "Write the frequency response as a table or a picture");
    responseCommand
        ->add_option("-o,--output", response.m_Output, "File to write: .csv, .png or .svg")
        ->type_name("FILE")
        ->check(CheckNotEmpty)
        ->required();
    AddSettings(*responseCommand, response.m_Settings);
    for (const auto& [name, value, help] :
         {std::tuple{"--rate", &response.m_SampleRate, "Sample rate"},
          {"--from", &response.m_From, "Lowest frequency"},
          {"--to", &response.m_To, "Highest frequency"}})
        responseCommand->add_option(name, *value, help)->type_name("HZ")->capture_default_str();
    responseCommand->add_option("--points", response.m_Points, "Number of frequencies")
        ->type_name("N")
        ->capture_default_str();

    SFormulaOptions formula;
    CLI::App* formulaCommand = app.add_subcommand(
        "formula", "Evaluate a formula: a value, or a table or picture over its variables");
    formulaCommand
        ->add_option("FORMULA", formula.m_Formula,
                     "Such as \"20 * log(1 + x ^ 2)\"; behind -- when it begins with a minus")
        ->required();
    formulaCommand
        ->add_option("--param", formula.m_Params,
                     "Value of a name that the formula leaves free; repeatable")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
    for (const auto& [name, value, help] :
         {std::tuple{"--x", &formula.m_X,
                     "Variable that runs from one value to another in equal steps"},
          {"--y", &formula.m_Y, "A second variable; the first one runs for each value of it"}})
        formulaCommand->add_option(name, *value, help)
            ->type_name("NAME=FROM:TO:STEPS")
            ->check(CheckNotEmpty);
    AddPath(*formulaCommand, "-o,--output", formula.m_Output, "FILE",
            "File to write in place of the table: .csv, .png or .svg");

    std::string folder;
    CLI::App* demoCommand =
        app.add_subcommand("demo", "Make a piece of audio, equalise it and draw the response");
    demoCommand->add_option("FOLDER", folder, "Where the files go; made when it isn't there")
        ->type_name("PATH")
        ->check(CheckNotEmpty)
        ->required();
    std::string module;
    AddModule(*demoCommand, module);

    CLI::App* infoCommand = app.add_subcommand("info", "Tell what the plug-in says of itself");
    AddModule(*infoCommand, module);
    CLI::App* presetsCommand =
        app.add_subcommand("presets", "List the presets that the plug-in finds");
    AddModule(*presetsCommand, module);
    presetsCommand->add_flag("--json", json, "As JSON");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
            app.exit(error); // Asked for help or the version.
            return Done;
        }
        // A word that is no sub-command says more than that there is none.
        const std::vector<std::string> unknown = app.remaining();
        const std::string what = unknown.empty()
                                     ? error.what()
                                     : '"' + unknown.front() +
                                           "\": expected render, params, presets, info, "
                                           "response, formula or demo";
        std::string command;
        for (const CLI::App* given : app.get_subcommands())
            command += given->get_name() + ' ';
        std::cerr << "cairn-host: " << OneLine(what) << " (see cairn-host " << command
                  << "--help)\n";
        return Usage;
    }

    if (*renderCommand)
        return RunRender(render, quiet);
    if (*paramsCommand)
        return RunParams(json);
    if (*responseCommand)
        return RunResponse(response);
    if (*formulaCommand)
        return RunFormula(formula);
    if (*infoCommand)
        return RunReport(module, DescribeModule);
    if (*presetsCommand)
        return RunPresets(module, json);
    return RunDemonstration(folder, module);
}
