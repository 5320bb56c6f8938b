// The client library of the server store, loaded the first time a session calls it.
// Most plants keep the embedded store and never reach a server: linked with the program,
// libpq and the libraries it brings (TLS, Kerberos, LDAP) would be loaded and bound at
// every start, a good part of the time the program takes to come up before its main
// screen. Each function below has libpq's own declaration and hands its call to the
// library's; when the library cannot be loaded, a connection fails with the loader's
// words as its error message and everything else does nothing.
#include <cstring>
#include <dlfcn.h>
#include <libpq-fe.h>

namespace {

/// The loaded library's handle, or null with the reason in loadError().
void* library()
{
    static void* handle = dlopen("libpq.so.5", RTLD_NOW | RTLD_GLOBAL);
    return handle;
}

const char* loadError()
{
    static const char* const error = [] {
        const char* e = library() ? nullptr : dlerror();
        // Owned by the loader only until its next call: kept in a buffer of our own.
        static char text[512];
        std::strncpy(text, e ? e : "libpq.so.5 cannot be loaded", sizeof text - 1);
        return text;
    }();
    return error;
}

/// The library's function of that name, as a pointer of the type F; null without it.
template <typename F> F resolve(const char* name)
{
    F f = nullptr;
    if (void* handle = library()) {
        void* symbol = dlsym(handle, name);
        static_assert(sizeof f == sizeof symbol);
        std::memcpy(&f, &symbol, sizeof f);
    }
    return f;
}

} // namespace

// One forwarding function: its libpq name, the parameters and the names passed on, and
// what it answers without the library.
#define VELMORA_LIBPQ(result, name, params, args, fallback)                                                            \
    result name params                                                                                                 \
    {                                                                                                                  \
        static const auto f = resolve<decltype(&name)>(#name);                                                         \
        return f ? f args : fallback;                                                                                  \
    }
#define VELMORA_LIBPQ_VOID(name, params, args)                                                                         \
    void name params                                                                                                   \
    {                                                                                                                  \
        static const auto f = resolve<decltype(&name)>(#name);                                                         \
        if (f)                                                                                                         \
            f args;                                                                                                    \
    }

extern "C" {

VELMORA_LIBPQ(PGconn*, PQconnectdb, (const char* conninfo), (conninfo), nullptr)
VELMORA_LIBPQ_VOID(PQfinish, (PGconn * conn), (conn))
VELMORA_LIBPQ(ConnStatusType, PQstatus, (const PGconn* conn), (conn), CONNECTION_BAD)
VELMORA_LIBPQ(char*, PQerrorMessage, (const PGconn* conn), (conn), const_cast<char*>(loadError()))
VELMORA_LIBPQ(char*, PQdb, (const PGconn* conn), (conn), nullptr)
VELMORA_LIBPQ(PGTransactionStatusType, PQtransactionStatus, (const PGconn* conn), (conn), PQTRANS_UNKNOWN)
VELMORA_LIBPQ(int, PQsetClientEncoding, (PGconn * conn, const char* encoding), (conn, encoding), -1)
VELMORA_LIBPQ(PQnoticeProcessor, PQsetNoticeProcessor, (PGconn * conn, PQnoticeProcessor proc, void* arg),
              (conn, proc, arg), nullptr)
VELMORA_LIBPQ(PGresult*, PQexec, (PGconn * conn, const char* query), (conn, query), nullptr)
VELMORA_LIBPQ(PGresult*, PQexecParams,
              (PGconn * conn, const char* command, int nParams, const Oid* paramTypes, const char* const* paramValues,
               const int* paramLengths, const int* paramFormats, int resultFormat),
              (conn, command, nParams, paramTypes, paramValues, paramLengths, paramFormats, resultFormat), nullptr)
VELMORA_LIBPQ(PGresult*, PQprepare,
              (PGconn * conn, const char* stmtName, const char* query, int nParams, const Oid* paramTypes),
              (conn, stmtName, query, nParams, paramTypes), nullptr)
VELMORA_LIBPQ(PGresult*, PQexecPrepared,
              (PGconn * conn, const char* stmtName, int nParams, const char* const* paramValues,
               const int* paramLengths, const int* paramFormats, int resultFormat),
              (conn, stmtName, nParams, paramValues, paramLengths, paramFormats, resultFormat), nullptr)
VELMORA_LIBPQ_VOID(PQclear, (PGresult * res), (res))
VELMORA_LIBPQ(ExecStatusType, PQresultStatus, (const PGresult* res), (res), PGRES_FATAL_ERROR)
VELMORA_LIBPQ(char*, PQresultErrorMessage, (const PGresult* res), (res), const_cast<char*>(loadError()))
VELMORA_LIBPQ(char*, PQresultErrorField, (const PGresult* res, int fieldcode), (res, fieldcode), nullptr)
VELMORA_LIBPQ(int, PQntuples, (const PGresult* res), (res), 0)
VELMORA_LIBPQ(int, PQnfields, (const PGresult* res), (res), 0)
VELMORA_LIBPQ(char*, PQfname, (const PGresult* res, int field_num), (res, field_num), nullptr)
VELMORA_LIBPQ(Oid, PQftype, (const PGresult* res, int field_num), (res, field_num), 0)
VELMORA_LIBPQ(char*, PQgetvalue, (const PGresult* res, int tup_num, int field_num), (res, tup_num, field_num), nullptr)
VELMORA_LIBPQ(int, PQgetlength, (const PGresult* res, int tup_num, int field_num), (res, tup_num, field_num), 0)
VELMORA_LIBPQ(int, PQgetisnull, (const PGresult* res, int tup_num, int field_num), (res, tup_num, field_num), 1)
VELMORA_LIBPQ(char*, PQcmdStatus, (PGresult * res), (res), nullptr)
VELMORA_LIBPQ(char*, PQcmdTuples, (PGresult * res), (res), nullptr)

} // extern "C"
