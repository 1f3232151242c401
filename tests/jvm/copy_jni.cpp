// Runs Java code in a copy of the process (class Script of the tests).

#include <jni.h>

#include <cerrno>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// The part of inACopy that runs in the copy.
[[noreturn]] void run_in_copy(JNIEnv* env, jobject runnable, int output) {
    const rlimit no_core = {};
    ::setrlimit(RLIMIT_CORE, &no_core);
    ::alarm(10);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    env->CallVoidMethod(runnable, env->GetMethodID(env->GetObjectClass(runnable), "run", "()V"));
    if (env->ExceptionCheck() != JNI_FALSE) {
        env->ExceptionDescribe();
        ::_exit(1);
    }
    ::_exit(0);
}

std::string everything_from(int file) {
    std::string all;
    char buffer[4096];
    ssize_t size = 0;
    while ((size = ::read(file, buffer, sizeof buffer)) > 0 || (size < 0 && errno == EINTR)) {
        all.append(buffer, static_cast<std::size_t>(size < 0 ? 0 : size));
    }
    return all;
}

} // namespace

// Only the calling thread goes on in the copy: what waits for another one, such as a garbage collection, does not
// return. An alarm ends it after 10 s.
extern "C" JNIEXPORT jstring JNICALL Java_com_velotra_tv_tavro_services_channellist_Script_inACopy(JNIEnv* env, jclass,
                                                                                                   jobject runnable) {
    int ends[2] = {};
    if (::pipe(ends) != 0) {
        return nullptr;
    }
    const pid_t copy = ::fork();
    if (copy == 0) {
        ::close(ends[0]);
        run_in_copy(env, runnable, ends[1]);
    }
    ::close(ends[1]);
    std::string output = copy < 0 ? "" : everything_from(ends[0]);
    ::close(ends[0]);
    int status = 0;
    if (copy < 0 || ::waitpid(copy, &status, 0) != copy) {
        return nullptr;
    }
    output += WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status))
                                  : "exit " + std::to_string(WEXITSTATUS(status));
    return env->NewStringUTF(output.c_str());
}
