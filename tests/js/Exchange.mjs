// One recorded exchange with a hosted project, played to the local service.
import assert from 'node:assert/strict';
import { request } from 'node:http';

const shapes = {
    '<uuid>': /^[0-9a-f]{8}-([0-9a-f]{4}-){3}[0-9a-f]{12}$/,
    '<instant>': /^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(\.\d+)?(Z|\+00:00)$/,
    '<token>': /^[\w-]+\.[\w-]+\.[\w-]+$/,
    '<text>': /./s,
};

/** "${name}" becomes what is known under that name. */
export function filledIn(value, known) {
    if (typeof value === 'string') {
        return value.replace(/\$\{(\w+)\}/g, (_, name) => {
            assert.ok(name in known, `nothing is known as ${name}`);
            return known[name];
        });
    }
    if (Array.isArray(value))
        return value.map((member) => filledIn(member, known));
    if (value !== null && typeof value === 'object')
        return Object.fromEntries(Object.entries(value).map(([key, member]) => [key, filledIn(member, known)]));
    return value;
}

/** Compares a reply's JSON with the recorded one; "...": true allows keys that are not named. */
export function assertLike(actual, expected, where) {
    if (typeof expected === 'string' && /^<\w+>$/.test(expected)) {
        if (expected === '<number>')
            return assert.equal(typeof actual, 'number', where);
        assert.ok(shapes[expected], `${where}: ${expected} is no shape`);
        assert.equal(typeof actual, 'string', where);
        return assert.match(actual, shapes[expected], where);
    }
    if (Array.isArray(expected)) {
        assert.ok(Array.isArray(actual), where);
        assert.equal(actual.length, expected.length, where);
        return expected.forEach((member, at) => assertLike(actual[at], member, `${where}[${at}]`));
    }
    if (expected !== null && typeof expected === 'object') {
        assert.ok(actual !== null && typeof actual === 'object' && !Array.isArray(actual), where);
        const { '...': isOpen, ...named } = expected;
        if (!isOpen)
            assert.deepEqual(Object.keys(actual).sort(), Object.keys(named).sort(), where);
        return Object.entries(named).forEach(([key, member]) => assertLike(actual[key], member, `${where}.${key}`));
    }
    return assert.deepEqual(actual, expected, where);
}

function send(url, { method, path, headers = {}, body }) {
    const bytes = body === undefined ? '' : typeof body === 'string' ? body : JSON.stringify(body);
    return new Promise((done, fail) => {
        const sent = request(new URL(url).origin + path, {
            method,
            headers: { ...(bytes === '' ? {} : { 'content-length': Buffer.byteLength(bytes) }), ...headers },
        }, (reply) => {
            const chunks = [];
            reply.on('data', (chunk) => chunks.push(chunk));
            reply.on('end', () => done({
                status: reply.statusCode, headers: reply.headers, text: Buffer.concat(chunks).toString(),
            }));
        });
        sent.on('error', fail);
        sent.end(bytes);
    });
}

/** Plays one exchange; what it says to "keep" is known afterwards. */
export async function play(service, exchange, known) {
    const reply = await send(service.url, filledIn(exchange.request, known));
    const expected = filledIn(exchange.reply, known);
    assert.equal(reply.status, expected.status, reply.text);
    for (const [name, value] of Object.entries(expected.headers ?? {}))
        assert.equal(reply.headers[name.toLowerCase()] ?? null, value, `header ${name}`);
    const isJson = (reply.headers['content-type'] ?? '').includes('json');
    if ('body' in expected)
        assertLike(isJson && reply.text !== '' ? JSON.parse(reply.text) : reply.text, expected.body, 'body');
    for (const [name, path] of Object.entries(exchange.keep ?? {}))
        known[name] = path.split('.').reduce((value, key) => value[key], JSON.parse(reply.text));
}
