#include "uti_SpawnSource.h"

#include "uti_Spawn_detail.h"

uti_SpawnSource::uti_SpawnSource(const cow_String& command, const Environment& env)
{
    Parser parser(command);
    spawnSource(parser.name, parser.path, parser.args, parser.redirection, parser.EnvironmentOver(env));
}

uti_SpawnSource::~uti_SpawnSource()
{
    m_source.Close();
    Finish();
}

void uti_SpawnSource::spawnSource(const cow_String& name, const utl_FilePath& path, const ArgumentList& args,
                                  uti_Redirection& redirection, const Environment& env)
{
    BeginStart(redirection);
    m_source.Set(redirection.CreateSource());
    spawn(name, path, args, redirection, env, ATTENDED);
}

int uti_SpawnSource::Reap(int seconds)
{
    if (IsRunning()) {
        m_source.Close();
    }
    return uti_Spawn::Reap(seconds);
}

void uti_SpawnSource::Detach()
{
    if (IsRunning()) {
        m_source.Close();
    }
    uti_Spawn::Detach();
}

uti_SpawnSourceWithSink::uti_SpawnSourceWithSink(const cow_String& command, const Environment& env)
{
    Parser parser(command);
    spawnSourceWithSink(parser.name, parser.path, parser.args, parser.redirection, parser.EnvironmentOver(env));
}

void uti_SpawnSourceWithSink::spawnSourceWithSink(const cow_String& name, const utl_FilePath& path,
                                                  const ArgumentList& args, uti_Redirection& redirection,
                                                  const Environment& env)
{
    BeginStart(redirection);
    m_sink.Set(redirection.CreateSink());
    spawnSource(name, path, args, redirection, env);
}

int uti_SpawnSourceWithSink::Reap(int)
{
    if (IsRunning()) {
        m_sink.Close();
    }
    return uti_SpawnSource::Reap(0);
}

void uti_SpawnSourceWithSink::Detach()
{
    if (IsRunning()) {
        m_sink.Close();
    }
    uti_SpawnSource::Detach();
}
