// Clang's lock annotations; empty for other compilers.
#ifndef SUPPORT_THREAD_ANNOTATIONS_H
#define SUPPORT_THREAD_ANNOTATIONS_H

#ifdef __clang__
#define VRAX_ANNOTATE(x) __attribute__((x))
#else
#define VRAX_ANNOTATE(x)
#endif

#define VRAX_CAPABILITY(name) VRAX_ANNOTATE(capability(name))
#define VRAX_SCOPED_CAPABILITY VRAX_ANNOTATE(scoped_lockable)
#define VRAX_GUARDED_BY(x) VRAX_ANNOTATE(guarded_by(x))
#define VRAX_ACQUIRE(...) VRAX_ANNOTATE(acquire_capability(__VA_ARGS__))
#define VRAX_RELEASE(...) VRAX_ANNOTATE(release_capability(__VA_ARGS__))
#define VRAX_EXCLUDES(...) VRAX_ANNOTATE(locks_excluded(__VA_ARGS__))
#define VRAX_REQUIRES(...) VRAX_ANNOTATE(requires_capability(__VA_ARGS__))
#define VRAX_ASSERT_CAPABILITY(x) VRAX_ANNOTATE(assert_capability(x))
#define VRAX_NO_THREAD_SAFETY_ANALYSIS VRAX_ANNOTATE(no_thread_safety_analysis)

#endif
