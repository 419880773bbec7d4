/*
 * Every function of the library as a generalised ufunc: NumPy broadcasts what is in front of the
 * records, and the loops below hand each record to the library by its address.
 *
 * The library wants packed float32 records that do not overlap where a contract forbids it. NumPy
 * has already converted types and copied arrays that overlap in part. What is left is done here, a
 * block at a time: records whose floats are strided, and outputs that are the very array of an
 * input that they must be apart from.
 */
#define PY_SSIZE_T_CLEAN
#define NPY_NO_DEPRECATED_API NPY_1_20_API_VERSION
#include <Python.h>
#include <numpy/arrayobject.h>
#include <numpy/arrayscalars.h>
#include <numpy/ufuncobject.h>

#include <kxmaths5.h>
#include <kxmaths5/everyday.h>

#include <fenv.h>
#include <math.h>
#include <stdlib.h>
#include <string.h>

#if defined(_MSC_VER)
#define KX_INLINE __forceinline
#else
#define KX_INLINE inline __attribute__((always_inline))
#endif

enum { MAX_OPERANDS = 8 };

/** What the ufunc's operand is in C. */
typedef struct {
    /** NPY_FLOAT and so on. */
    int type;
    /** How many trailing dimensions a record has, and which of the signature's they are. */
    int dimensions, dimension[2];
    /** Their lengths; -1 for one that the caller chooses. */
    npy_intp size[2];
    /** For an output: the inputs that its address may equal, a bit each. */
    unsigned may_be;
    /** For an index: the highest there is. */
    uint32_t highest;
} Operand;

/** Calls the function for n packed records; an operand that is left out has the address null. */
typedef void (*Loop)(char *const *at, const npy_intp *step, const npy_intp *length, npy_intp n);

typedef struct {
    const char *name, *signature;
    int inputs, outputs;
    Operand operands[MAX_OPERANDS];
    Loop loop;
    /** The array form, which takes all records in one call; null if there is none. */
    Loop array_form;
    /** For the array form: the operands that are one for all records. */
    unsigned single;
} Function;

/** What an output holds where the function writes nothing. */
static const float no_result[16] = {NAN, NAN, NAN, NAN, NAN, NAN, NAN, NAN,
                                    NAN, NAN, NAN, NAN, NAN, NAN, NAN, NAN};

static void kx_box_around(uint32_t count, const KXP3 *points, KXBox *out)
{
    const KXP3 nowhere = {NAN, NAN, NAN};
    KXBox box = {count ? points[0] : nowhere, count ? points[0] : nowhere};
    for (uint32_t i = 1; i < count; ++i) {
        KXPutPointInBox(&points[i], &box);
    }
    *out = box;
}

#include "_table.h"

/** What a ufunc's loop gets: a function, and the outputs that are left out of it. */
typedef struct {
    const Function *function;
    /** The function's operand for each of the ufunc's. */
    int operand_of[MAX_OPERANDS];
    int operands;
} Call;

static npy_intp item_size(int type)
{
    return type == NPY_DOUBLE ? 8 : 4;
}

/** One operand of a running loop. */
typedef struct {
    char *at;
    npy_intp step;
    /** Floats in a row, rows, their distances, and the size of the packed record, in bytes. */
    npy_intp columns, rows, column_step, row_step, item, size;
    int is_output, is_packed;
} Running;

static void copy_record(char *to, npy_intp to_column, npy_intp to_row, const char *from,
                        npy_intp from_column, npy_intp from_row, const Running *shape)
{
    for (npy_intp row = 0; row < shape->rows; ++row) {
        for (npy_intp column = 0; column < shape->columns; ++column) {
            memcpy(to + row * to_row + column * to_column,
                   from + row * from_row + column * from_column, (size_t)shape->item);
        }
    }
}

static void pack(char *packed, const Running *from, npy_intp index)
{
    copy_record(packed, from->item, from->item * from->columns, from->at + index * from->step,
                from->column_step, from->row_step, from);
}

static void unpack(const Running *to, npy_intp index, const char *packed)
{
    copy_record(to->at + index * to->step, to->column_step, to->row_step, packed, to->item,
                to->item * to->columns, to);
}

/** Describes the operands; says whether the library can work on all of them where they are. */
static int describe(const Call *call, char **args, const npy_intp *dimensions,
                    const npy_intp *steps, Running *running)
{
    const Function *const function = call->function;
    const npy_intp *core_step = steps + call->operands;
    int in_place = 1;
    for (int i = 0; i < call->operands; ++i) {
        const int index = call->operand_of[i];
        const Operand *const operand = &function->operands[index];
        Running *const each = &running[i];
        each->at = args[i];
        each->step = steps[i];
        each->item = item_size(operand->type);
        each->rows = operand->dimensions == 2 ? dimensions[1 + operand->dimension[0]] : 1;
        each->columns = operand->dimensions > 0
                            ? dimensions[1 + operand->dimension[operand->dimensions - 1]]
                            : 1;
        each->row_step = operand->dimensions == 2 ? *core_step++ : each->item * each->columns;
        each->column_step = operand->dimensions > 0 ? *core_step++ : each->item;
        each->size = each->item * each->columns * each->rows;
        each->is_output = index >= function->inputs;
        each->is_packed = (each->columns < 2 || each->column_step == each->item) &&
                          (each->rows < 2 || each->row_step == each->item * each->columns);
        if (each->is_output) {
            for (int other = 0; other < i && !running[other].is_output; ++other) {
                if (args[other] == args[i] && !(operand->may_be >> other & 1)) {
                    each->is_packed = 0;
                }
            }
        }
        in_place &= each->is_packed;
    }
    return in_place;
}

static void run(const Call *call, const Running *running, char *const *at, const npy_intp *step,
                const npy_intp *length, npy_intp n)
{
    const Function *const function = call->function;
    /* An operand that is left out keeps the address null. */
    char *address[MAX_OPERANDS] = {0};
    npy_intp steps[MAX_OPERANDS] = {0};
    int is_array = function->array_form && n > 1;
    for (int i = 0; i < call->operands; ++i) {
        const int index = call->operand_of[i];
        address[index] = at[i];
        steps[index] = step[i];
        is_array &= step[i] == (function->single >> index & 1 ? 0 : running[i].size);
    }
    (is_array ? function->array_form : function->loop)(address, steps, length, n);
}

static void loop(char **args, const npy_intp *dimensions, const npy_intp *steps, void *data)
{
    enum { block_bytes = 16384 };
    const Call *const call = data;
    Running running[MAX_OPERANDS];
    const int in_place = describe(call, args, dimensions, steps, running);
    const npy_intp count = dimensions[0], *const length = dimensions + 1;

    npy_intp bytes = 0;
    for (int i = 0; i < call->operands; ++i) {
        bytes += running[i].is_packed ? 0 : running[i].size;
    }
    const npy_intp block = bytes == 0 ? count : bytes < block_bytes ? block_bytes / bytes : 1;

    char *const buffer = in_place ? NULL : malloc((size_t)(bytes * block) + 1);
    if (!in_place && !buffer) {
        NPY_ALLOW_C_API_DEF
        NPY_ALLOW_C_API;
        PyErr_NoMemory();
        NPY_DISABLE_C_API;
        return;
    }
    for (npy_intp done = 0; done < count; done += block) {
        const npy_intp n = count - done < block ? count - done : block;
        char *at[MAX_OPERANDS], *next = buffer;
        npy_intp step[MAX_OPERANDS];
        for (int i = 0; i < call->operands; ++i) {
            const Running *const each = &running[i];
            at[i] = each->is_packed ? each->at + done * each->step : next;
            step[i] = each->is_packed ? each->step : each->step == 0 ? 0 : each->size;
            if (!each->is_packed) {
                next += each->size * block;
                for (npy_intp k = 0; !each->is_output && k < (step[i] ? n : 1); ++k) {
                    pack(at[i] + k * each->size, each, done + k);
                }
            }
        }
        run(call, running, at, step, length, n);
        for (int i = 0; i < call->operands; ++i) {
            for (npy_intp k = 0; running[i].is_output && !running[i].is_packed && k < n; ++k) {
                unpack(&running[i], done + k, at[i] + k * running[i].size);
            }
        }
    }
    free(buffer);
    /* Results say what went wrong. Which flags are raised on the way differs between processors. */
    feclearexcept(FE_ALL_EXCEPT);
}

/**
 * The types are the library's, whatever is given: numbers of any kind become float32, and integers,
 * whose range the caller has checked, uint32. NumPy's own search would refuse float64.
 */
static int resolve_types(PyUFuncObject *ufunc, NPY_CASTING casting, PyArrayObject **operands,
                         PyObject *wanted, PyArray_Descr **types)
{
    const int count = ufunc->nin + ufunc->nout;
    int status = 0;
    for (int i = 0; i < count; ++i) {
        types[i] = PyArray_DescrFromType(ufunc->types[i]);
        PyObject *const type =
            wanted && PyTuple_Check(wanted) ? PyTuple_GET_ITEM(wanted, i) : Py_None;
        if (type != Py_None && ((PyArray_Descr *)type)->type_num != types[i]->type_num) {
            PyErr_Format(PyExc_TypeError, "operand %d is always %S, not %S", i, types[i], type);
            status = -1;
        }
    }
    for (int i = 0; i < count && status == 0; ++i) {
        if (!operands[i]) {
            continue;
        }
        const int is_index = types[i]->type_num == NPY_UINT32 && i < ufunc->nin;
        if (i < ufunc->nin
                ? !PyArray_CanCastArrayTo(operands[i], types[i], casting) &&
                      !(is_index && PyArray_ISINTEGER(operands[i]))
                : !PyArray_CanCastTypeTo(types[i], PyArray_DESCR(operands[i]), casting)) {
            PyErr_Format(PyExc_TypeError, "operand %d is made of %S", i,
                         PyArray_DESCR(operands[i]));
            status = -1;
        }
    }
    for (int i = 0; i < count && status < 0; ++i) {
        Py_CLEAR(types[i]);
    }
    return status;
}

static const Function *function_named(const char *name)
{
    for (size_t i = 0; i < sizeof functions / sizeof *functions; ++i) {
        if (strcmp(functions[i].name, name) == 0) {
            return &functions[i];
        }
    }
    PyErr_Format(PyExc_KeyError, "%s", name);
    return NULL;
}

/** The text of a signature without the operands that are left out. */
static void write_signature(char *to, const Function *function, unsigned left_out)
{
    const char *from = function->signature;
    int index = 0, written = 0;
    for (; *from; ++from) {
        if (*from == '-') {
            *to++ = *from++;
            *to++ = *from;
            written = 0;
        } else if (*from == '(') {
            const int is_left_out = left_out >> index++ & 1;
            const char *const end = strchr(from, ')') + 1;
            if (!is_left_out) {
                if (written++) {
                    *to++ = ',';
                }
                memcpy(to, from, (size_t)(end - from));
                to += end - from;
            }
            from = end - 1;
        }
    }
    *to = 0;
}

/** All that a ufunc keeps pointers to; a ufunc is made once and lives as long as the process. */
typedef struct {
    Call call;
    PyUFuncGenericFunction loop;
    void *data;
    char types[MAX_OPERANDS];
    char signature[128];
} Made;

static PyObject *make(PyObject *module, PyObject *args)
{
    const char *name;
    unsigned left_out;
    (void)module;
    if (!PyArg_ParseTuple(args, "sI", &name, &left_out)) {
        return NULL;
    }
    const Function *const function = function_named(name);
    Made *const made = function ? calloc(1, sizeof *made) : NULL;
    if (!made) {
        return function ? PyErr_NoMemory() : NULL;
    }
    int outputs = 0;
    for (int i = 0; i < function->inputs + function->outputs; ++i) {
        if (!(left_out >> i & 1)) {
            made->types[made->call.operands] = (char)function->operands[i].type;
            made->call.operand_of[made->call.operands++] = i;
            outputs += i >= function->inputs;
        }
    }
    made->call.function = function;
    made->loop = (PyUFuncGenericFunction)loop;
    made->data = &made->call;
    write_signature(made->signature, function, left_out);
    PyObject *const ufunc = PyUFunc_FromFuncAndDataAndSignature(
        &made->loop, &made->data, made->types, 1, function->inputs, outputs, PyUFunc_None,
        function->name, "", 0, made->signature);
    if (!ufunc) {
        free(made);
        return NULL;
    }
    ((PyUFuncObject *)ufunc)->type_resolver = resolve_types;
    return ufunc;
}

/** A number by itself, and where a single call keeps it. */
typedef union {
    float single;
    double wide;
    uint32_t index;
    char record[sizeof(KXTriangle)];
} Number;

/** A record's class or None for an operand, in the tuple of a single call's descriptions. */
static PyArray_Descr *named_record(PyObject *records, int index)
{
    PyObject *const record = PyTuple_GET_ITEM(records, index);
    return record == Py_None ? NULL : (PyArray_Descr *)record;
}

/** The address of one packed record or number; null if the value is anything else. */
static char *address_of(PyObject *value, const Operand *operand, PyArray_Descr *record,
                        Number *number)
{
    if (PyArray_CheckExact(value)) {
        PyArrayObject *const array = (PyArrayObject *)value;
        int is_one = PyArray_NDIM(array) == operand->dimensions && operand->dimensions > 0 &&
                     PyArray_TYPE(array) == operand->type && PyArray_ISCARRAY_RO(array);
        for (int i = 0; is_one && i < operand->dimensions; ++i) {
            is_one = PyArray_DIM(array, i) == operand->size[i];
        }
        return is_one ? PyArray_DATA(array) : NULL;
    }
    if (record && PyArray_IsScalar(value, Void)) {
        const PyVoidScalarObject *const scalar = (PyVoidScalarObject *)value;
        return scalar->descr == record && (size_t)scalar->obval % sizeof(float) == 0 ? scalar->obval
                                                                                     : NULL;
    }
    if (operand->dimensions > 0 || operand->type == NPY_DOUBLE) {
        return NULL;
    }
    if (operand->type == NPY_UINT32 && (PyLong_Check(value) || PyArray_IsScalar(value, Integer))) {
        int has_overflowed;
        const long long index = PyLong_AsLongLongAndOverflow(value, &has_overflowed);
        number->index = (uint32_t)index;
        return !has_overflowed && index >= 0 && index <= operand->highest ? (char *)number : NULL;
    }
    if (operand->type == NPY_FLOAT && (PyFloat_Check(value) || PyLong_Check(value))) {
        const double wide = PyFloat_AsDouble(value);
        if (PyErr_Occurred()) { /* Of an integer that no double reaches. */
            PyErr_Clear();
            return NULL;
        }
        number->single = (float)wide;
        return fabs(wide) <= 0x1p53 ? (char *)number : NULL;
    }
    if (operand->type == NPY_FLOAT && PyArray_IsScalar(value, Float)) {
        number->single = PyArrayScalar_VAL(value, Float);
        return (char *)number;
    }
    return NULL;
}

/** New outputs of one call, alone or as a tuple. */
static PyObject *call_once(const Function *function, PyObject *records, char **at)
{
    static const npy_intp step[MAX_OPERANDS] = {0};
    PyObject *made[MAX_OPERANDS] = {0};
    Number numbers[MAX_OPERANDS];
    int is_made = 1;
    for (int i = 0; i < function->outputs; ++i) {
        const int index = function->inputs + i;
        const Operand *const operand = &function->operands[index];
        at[index] = (char *)&numbers[i];
        if (operand->dimensions > 0 && !named_record(records, index)) {
            made[i] = PyArray_SimpleNew(operand->dimensions, operand->size, operand->type);
            is_made &= made[i] != NULL;
            at[index] = made[i] ? PyArray_DATA((PyArrayObject *)made[i]) : NULL;
        }
    }
    if (is_made) {
        function->loop(at, step, NULL, 1);
    }
    for (int i = 0; is_made && i < function->outputs; ++i) {
        if (!made[i]) {
            const int index = function->inputs + i;
            PyArray_Descr *type = named_record(records, index);
            Py_XINCREF(type);
            type = type ? type : PyArray_DescrFromType(function->operands[index].type);
            made[i] = PyArray_Scalar(at[index], type, NULL);
            Py_DECREF(type);
            is_made &= made[i] != NULL;
        }
    }
    PyObject *const all = is_made && function->outputs > 1 ? PyTuple_New(function->outputs) : NULL;
    for (int i = 0; i < function->outputs; ++i) {
        if (all) {
            PyTuple_SET_ITEM(all, i, made[i]);
        } else if (!is_made || function->outputs > 1) {
            Py_XDECREF(made[i]);
        }
    }
    return is_made && function->outputs == 1 ? made[0] : all;
}

/**
 * simply(out, *inputs): one packed record of each input, and new outputs, need no ufunc, which
 * takes several times as long to begin. Everything else goes to `others`.
 */
static PyObject *simply(PyObject *self, PyObject *const *args, Py_ssize_t count)
{
    const Function *const function = PyCapsule_GetPointer(PyTuple_GET_ITEM(self, 0), NULL);
    PyObject *const others = PyTuple_GET_ITEM(self, 1), *const records = PyTuple_GET_ITEM(self, 2);
    char *at[MAX_OPERANDS];
    Number numbers[MAX_OPERANDS];
    int is_one = count == function->inputs + 1 && args[0] == Py_None;
    for (int i = 0; is_one && i < function->inputs; ++i) {
        at[i] =
            address_of(args[1 + i], &function->operands[i], named_record(records, i), &numbers[i]);
        is_one = at[i] != NULL;
    }
    return is_one ? call_once(function, records, at)
                  : PyObject_Vectorcall(others, args, (size_t)count, NULL);
}

/** The function simply for a function: its name, what takes all other calls, and the named records'
 * types. */
static PyObject *make_simply(PyObject *module, PyObject *args)
{
    static PyMethodDef method = {"simply", (PyCFunction)(void (*)(void))simply, METH_FASTCALL,
                                 NULL};
    const char *name;
    PyObject *others, *records;
    (void)module;
    if (!PyArg_ParseTuple(args, "sOO!", &name, &others, &PyTuple_Type, &records)) {
        return NULL;
    }
    const Function *const function = function_named(name);
    PyObject *const capsule = function ? PyCapsule_New((void *)function, NULL, NULL) : NULL;
    PyObject *const self = capsule ? PyTuple_Pack(3, capsule, others, records) : NULL;
    Py_XDECREF(capsule);
    PyObject *const made = self ? PyCFunction_New(&method, self) : NULL;
    Py_XDECREF(self);
    return made;
}

/** The highest vertex index of triangles that are rows of 17 words. */
static PyObject *highest_vertex(PyObject *module, PyObject *words)
{
    (void)module;
    PyArrayObject *const array =
        (PyArrayObject *)PyArray_FROMANY(words, NPY_UINT32, 1, 0, NPY_ARRAY_CARRAY_RO);
    if (!array) {
        return NULL;
    }
    const npy_intp count = PyArray_SIZE(array) / (npy_intp)(sizeof(KXTriangle) / 4);
    const KXTriangle *const triangles = PyArray_DATA(array);
    npy_int64 highest = -1;
    for (npy_intp i = 0; i < count; ++i) {
        for (int corner = 0; corner < 3; ++corner) {
            const npy_int64 vertex = triangles[i].corner[corner].vertex;
            highest = vertex > highest ? vertex : highest;
        }
    }
    Py_DECREF(array);
    return PyLong_FromLongLong(highest);
}

PyMODINIT_FUNC PyInit__ufuncs(void)
{
    static PyMethodDef methods[] = {
        {"make", make, METH_VARARGS, "The ufunc of a function, without some of its outputs."},
        {"make_simply", make_simply, METH_VARARGS, "A function for calls with one of each record."},
        {"highest_vertex", highest_vertex, METH_O, "The highest vertex index of triangles."},
        {0}};
    static PyModuleDef definition = {
        PyModuleDef_HEAD_INIT, "_ufuncs", NULL, -1, methods, 0, 0, 0, 0};
    import_array();
    import_umath();
    return PyModule_Create(&definition);
}
