#pragma once

/* The library for C and for languages that call C functions: objects are created, read, set and called by
 * name.
 *
 * Results. A function that can fail returns its error, or NULL when all went well. The caller frees an error
 * with nk_error_free. What a function gives through a pointer is set only when it returns NULL.
 *
 * Text is UTF-8. What goes in is a pointer and a number of bytes, so that it needs no end mark; what comes
 * out has an end mark as well. Names (members, classes) are texts with an end mark.
 *
 * Ownership. The library never keeps a pointer that it is given: texts, arrays and handles stay the caller's.
 * What it gives belongs to the caller until nk_value_clear, nk_object_release or nk_error_free. What
 * describes classes belongs to the library and stays for good.
 *
 * Threads. Every function may be called in any thread. Objects that have to do with each other form a group:
 * what a call takes, and what it gives. One thread at a time is in a group, and a call waits for another
 * thread's; objects of different groups never wait for each other. A handle that is released while a call is
 * in its group waits in a queue, and that call frees it at its end: a release never waits, and may come from
 * a garbage collector. What one thread does in several calls, another one may come between. The validation
 * string of a login belongs to the thread that logged in. No function may be called in a signal handler.
 *
 * This interface only grows: names, signatures, structures and numbers stay as they are. */

/* NOLINTBEGIN: C's headers and names, and C has no using. */
#include <stddef.h>
#include <stdint.h>

#define NK_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/* A handle: one hold on an object. Two handles may hold the same object. */
typedef struct nk_object nk_object;
typedef struct nk_error nk_error;
typedef struct nk_value nk_value;

/* What an nk_value holds. */
enum {
    NK_EMPTY = 0,   /* no value */
    NK_NULL = 1,    /* a script's Null */
    NK_BOOLEAN = 2, /* integer: 0 or 1 */
    NK_INTEGER = 3, /* integer */
    NK_NUMBER = 4,  /* number */
    NK_DATE = 5,    /* number: days since 1899-12-30, the time of day in the fraction of its absolute value */
    NK_TEXT = 6,    /* text and length */
    NK_OBJECT = 7,  /* object, NULL for Nothing; in a result, integer is the number of its class or -1 */
    NK_ARRAY = 8,   /* elements and length; integer is the index of the first one */
    NK_DECIMAL =
        9, /* a number whose digits a double does not hold: text and length, number is the nearest one */
    NK_MISSING = 10 /* only as an argument: one that is left out */
};

struct nk_value {
    int32_t kind;
    int32_t integer;
    double number;
    const char* text;
    size_t length; /* bytes of text, or number of elements */
    nk_object* object;
    nk_value* elements;
};

/* Frees what a result holds, elements and handles included, and makes it NK_EMPTY. To keep an object or an
 * element, take it out first (set the pointer to NULL). Not for values that the caller filled. Never fails.
 */
NK_API void nk_value_clear(nk_value* value);

/* Creates an object by its programmatic identifier ("NorvaKavlor.TextBooks", letter case ignored). Raises 429
 * when there is no such class. */
NK_API nk_error* nk_create(const char* identifier, nk_object** object);

/* Parses a document and gives it as an object that LoadFromXMLNode and SaveToXMLNode take; its property "xml"
 * is its text. Raises 13 when the text is not well-formed. */
NK_API nk_error* nk_parse(const char* text, size_t length, nk_object** node);

/* Releases a handle; NULL is allowed. Never fails and never waits. */
NK_API void nk_object_release(nk_object* object);

/* One more handle on the same object. */
NK_API nk_error* nk_object_share(nk_object* object, nk_object** other);

/* The number of its class in the tables below, or -1. */
NK_API int32_t nk_object_class(const nk_object* object);

/* What tells this object from every other one while a handle on it is there. */
NK_API const void* nk_object_identity(const nk_object* object);

/* Calls a method, or reads a property with indexes. Letter case of the name is ignored. `results` may be
 * NULL; else it has room for `result_count` values, one for each parameter: those by reference and arrays
 * come back there, the others are NK_EMPTY. Every one of them is to be cleared. Raises 438 for an unknown
 * member, 450 for too many arguments, 449 for one that is left out and must not be, and what the member
 * raises. */
NK_API nk_error* nk_call(nk_object* object, const char* member, const nk_value* arguments, size_t count,
                         nk_value* result, nk_value* results, size_t result_count);

/* Reads a property. */
NK_API nk_error* nk_get(nk_object* object, const char* property, nk_value* value);

/* Sets a property; `indexes` may be NULL when `count` is 0. Raises 438 when it is read-only. */
NK_API nk_error* nk_put(nk_object* object, const char* property, const nk_value* value,
                        const nk_value* indexes, size_t count);

/* One step of a walk over a collection. A walk begins with *mark = 0; *found is 0 at its end, and no element
 * is given then. The collection may change meanwhile: no element is passed over for it. Raises 438 for
 * another object. */
NK_API nk_error* nk_next(nk_object* object, uint64_t* mark, int* found, nk_value* element);

/* What an error says. The texts belong to the error; one that there is none of is "", as all of NULL are. */
NK_API int32_t nk_error_number(const nk_error* error);
NK_API const char* nk_error_source(const nk_error* error);
NK_API const char* nk_error_description(const nk_error* error);
/* The place in a document, when the error has one: the document's location, line and column from 1 (else 0),
 * and the member of the collection that was being read. */
NK_API const char* nk_error_document(const nk_error* error);
NK_API int32_t nk_error_line(const nk_error* error);
NK_API int32_t nk_error_column(const nk_error* error);
NK_API const char* nk_error_member(const nk_error* error);
/* NULL is allowed. */
NK_API void nk_error_free(nk_error* error);

/* Why the last call in this thread failed, was refused or left something out; a success leaves it. "" until
 * one was not. The text stays until the thread asks again. */
NK_API const char* nk_last_reason(void);

/* The library's version, such as "1.0.0". */
NK_API const char* nk_version(void);

/* The tables of the classes. */
enum {
    NK_TYPE_NONE = 0,
    NK_TYPE_TEXT = 1,
    NK_TYPE_BOOLEAN = 2,
    NK_TYPE_INT16 = 3,
    NK_TYPE_INT32 = 4,
    NK_TYPE_DOUBLE = 5,
    NK_TYPE_DATE = 6,
    NK_TYPE_OBJECT = 7,
    NK_TYPE_NODE = 8, /* a node as nk_parse gives it */
    NK_TYPE_DOCUMENT = 9,
    NK_TYPE_ARRAY = 10,
    NK_TYPE_SCALAR = 11, /* text, number or date, whichever comes */
    NK_TYPE_ANY = 12
};

typedef struct nk_type {
    int32_t kind;
    int32_t class_number; /* of an object, or -1 for any class */
} nk_type;

typedef struct nk_class_row {
    const char* name;
    const char* summary;
    size_t member_count;
    int32_t default_member; /* its number, or -1 */
    uint8_t is_creatable;
    uint8_t is_collection; /* nk_next walks it */
} nk_class_row;

typedef struct nk_member_row {
    const char* name;
    const char* help;
    size_t parameter_count;
    nk_type type;
    uint8_t is_method;
    uint8_t is_readable;
    uint8_t is_writable;
} nk_member_row;

typedef struct nk_parameter_row {
    const char* name;
    nk_type type;
    uint8_t is_optional;
    uint8_t is_by_reference;
} nk_parameter_row;

typedef struct nk_enumeration_row {
    const char* name;
    const char* summary;
    size_t constant_count;
} nk_enumeration_row;

typedef struct nk_constant_row {
    const char* name;
    const char* help;
    int32_t value;
} nk_constant_row;

/* Each fills a row; 1 when there is one under these numbers, which count from 0. */
NK_API int nk_class(size_t number, nk_class_row* row);
NK_API int nk_member(size_t class_number, size_t number, nk_member_row* row);
NK_API int nk_parameter(size_t class_number, size_t member_number, size_t number, nk_parameter_row* row);
NK_API int nk_enumeration(size_t number, nk_enumeration_row* row);
NK_API int nk_constant(size_t enumeration_number, size_t number, nk_constant_row* row);

#ifdef __cplusplus
}
#endif
/* NOLINTEND */
