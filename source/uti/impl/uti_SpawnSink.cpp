#include "uti_SpawnSink.h"

#include "uti_Spawn_detail.h"

uti_SpawnSink::uti_SpawnSink(const cow_String& command, const Environment& env)
{
    Parser parser(command);
    spawnSink(parser.name, parser.path, parser.args, parser.redirection, parser.EnvironmentOver(env));
}

uti_SpawnSink::~uti_SpawnSink()
{
    m_sink.Close();
    Finish();
}

void uti_SpawnSink::spawnSink(const cow_String& name, const utl_FilePath& path, const ArgumentList& args,
                              uti_Redirection& redirection, const Environment& env)
{
    BeginStart(redirection);
    m_sink.Set(redirection.CreateSink());
    spawn(name, path, args, redirection, env, ATTENDED);
}

int uti_SpawnSink::Reap(int seconds)
{
    if (IsRunning()) {
        m_sink.Close();
    }
    return uti_Spawn::Reap(seconds);
}

void uti_SpawnSink::Detach()
{
    if (IsRunning()) {
        m_sink.Close();
    }
    uti_Spawn::Detach();
}

uti_SpawnSinkWithSource::uti_SpawnSinkWithSource(const cow_String& command, const Environment& env)
{
    Parser parser(command);
    spawnSinkWithSource(parser.name, parser.path, parser.args, parser.redirection, parser.EnvironmentOver(env));
}

void uti_SpawnSinkWithSource::spawnSinkWithSource(const cow_String& name, const utl_FilePath& path,
                                                  const ArgumentList& args, uti_Redirection& redirection,
                                                  const Environment& env)
{
    BeginStart(redirection);
    m_source.Set(redirection.CreateSource());
    spawnSink(name, path, args, redirection, env);
}

int uti_SpawnSinkWithSource::Reap(int seconds)
{
    if (IsRunning()) {
        m_source.Close();
    }
    return uti_SpawnSink::Reap(seconds);
}

void uti_SpawnSinkWithSource::Detach()
{
    if (IsRunning()) {
        m_source.Close();
    }
    uti_SpawnSink::Detach();
}
