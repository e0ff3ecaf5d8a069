#pragma once

namespace pg::cli {

class CommandContext;

// The run functions of the commands, one file each (democommand.cpp ...).
int runDemo(CommandContext &context);
int runArchive(CommandContext &context);
int runList(CommandContext &context);
int runShow(CommandContext &context);
int runDelete(CommandContext &context);
int runVerifica(CommandContext &context);
int runDb(CommandContext &context);
int runInstalla(CommandContext &context);

} // namespace pg::cli
