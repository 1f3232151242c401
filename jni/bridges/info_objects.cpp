#include "jni/bridges/info_objects.h"

#include "jni/env/jni_log.h"

namespace tavro {

bool find_class(Jni& jni, const char* name, const char* path, const char* no_class, const char* no_constructor,
                JavaClass& found) {
    if (jni.failed()) {
        return false; // an earlier call failed; this class was never looked up
    }
    found.cls = jni.find_class(path);
    found.constructor = jni.method(found.cls, "<init>", "()V");
    if (jni.failed()) {
        TAVRO_LOG_JNI("%s : %s", name, found.cls == nullptr ? no_class : no_constructor);
        return false;
    }
    return true;
}

bool ResultList::create(Jni& jni, const char* name) {
    constexpr char kMissing[] = "ArrayList class not find!";
    JavaClass array_list;
    if (!find_class(jni, name, "java/util/ArrayList", kMissing, kMissing, array_list)) {
        return false;
    }
    list_ = jni.new_object(array_list.cls, array_list.constructor);
    add_ = jni.method(array_list.cls, "add", "(Ljava/lang/Object;)Z");
    if (jni.failed()) {
        TAVRO_LOG_JNI("%s : %s", name, kMissing);
        return false;
    }
    return true;
}

} // namespace tavro
