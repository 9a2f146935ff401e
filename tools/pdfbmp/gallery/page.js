// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// Filters, orders and pages the list that the page holds already. What is chosen is kept behind the
// "#" of the address, so that a link can show it again.
'use strict';
(() => {
  const cardsPerPage = 120;
  const byId = (id) => document.getElementById(id);
  const list = byId('images');
  const cards = Array.from(list.children, (element, index) => ({
    element,
    page: index,
    text: element.textContent.toLowerCase().replace(/\s+/g, ' '),
    kind: element.dataset.kind,
    space: element.dataset.space,
    pixels: Number(element.dataset.pixels),
    bytes: Number(element.dataset.bytes),
    ppi: Number(element.dataset.ppi) || Infinity,
    problem: element.querySelector('.problem') !== null,
  }));
  const fields = ['words', 'kind', 'space', 'order', 'problems'].map(byId);
  const number = (n) => n.toLocaleString('en');
  let order = 'page';
  let page = 0;

  function addChoices(select, key) {
    for (const value of [...new Set(cards.map((card) => card[key]))].sort()) {
      select.add(new Option(value, value));
    }
  }

  function wanted() {
    // Words, or phrases in quotes.
    const words = (byId('words').value.toLowerCase().match(/"[^"]*"?|[^\s"]+/g) || [])
        .map((word) => word.replace(/"/g, ''));
    const kind = byId('kind').value;
    const space = byId('space').value;
    const problems = byId('problems').checked;
    return cards.filter((card) => (kind === '' || card.kind === kind) &&
        (space === '' || card.space === space) && (!problems || card.problem) &&
        words.every((word) => card.text.includes(word)));
  }

  // Orders are named for the number they go by and its direction; equals stay in page order.
  function putInOrder() {
    if (byId('order').value === order) return;
    order = byId('order').value;
    const [key, direction] = order.split('-');
    const sign = direction === 'down' ? -1 : 1;
    cards.sort((a, b) => a[key] === b[key] ? a.page - b.page : sign * (a[key] < b[key] ? -1 : 1));
    list.append(...cards.map((card) => card.element));
  }

  function tellCount(shown, first, last) {
    const all = shown === cards.length;
    const part = last - first < shown ? `${number(first + 1)} to ${number(last)} of ` : all ? 'All ' : '';
    const of = all ? '' : `, out of ${number(cards.length)}`;
    byId('count').textContent = `${part}${number(shown)} ${shown === 1 ? 'image' : 'images'}${of}`;
  }

  function show() {
    putInOrder();
    const shown = wanted();
    const pages = Math.max(1, Math.ceil(shown.length / cardsPerPage));
    page = Math.min(page, pages - 1);
    const first = page * cardsPerPage;
    const last = Math.min(first + cardsPerPage, shown.length);
    const visible = new Set(shown.slice(first, last));
    for (const card of cards) {
      if (card.element.hidden === visible.has(card)) card.element.hidden = !visible.has(card);
    }
    tellCount(shown.length, first, last);
    byId('pager').hidden = pages === 1;
    byId('position').textContent = `Page ${number(page + 1)} of ${number(pages)}`;
    byId('previous').disabled = page === 0;
    byId('next').disabled = page === pages - 1;
  }

  function turn(by) {
    page += by;
    show();
    keepState();
    window.scrollTo(0, 0);
    list.focus({preventScroll: true});
  }

  function isDark() {
    const theme = document.documentElement.dataset.theme;
    return theme ? theme === 'dark' : matchMedia('(prefers-color-scheme: dark)').matches;
  }

  function setTheme(theme) {
    if (theme) document.documentElement.dataset.theme = theme;
    byId('theme').setAttribute('aria-pressed', String(isDark()));
  }

  function keepState() {
    const state = new URLSearchParams();
    for (const field of fields) {
      const value = field.type === 'checkbox' ? (field.checked ? '1' : '') : field.value;
      if (value && value !== 'page') state.set(field.id, value);
    }
    if (page > 0) state.set('page', page + 1);
    const theme = document.documentElement.dataset.theme;
    if (theme) state.set('theme', theme);
    const text = state.toString();
    history.replaceState(null, '', text ? `#${text}` : location.pathname + location.search);
  }

  function readState() {
    const state = new URLSearchParams(location.hash.slice(1));
    for (const field of fields) {
      const value = state.get(field.id) || '';
      if (field.type === 'checkbox') {
        field.checked = value === '1';
      } else if (field.options) {
        field.selectedIndex = Math.max(0, Array.from(field.options, (o) => o.value).indexOf(value));
      } else {
        field.value = value;
      }
    }
    page = Math.max(0, (parseInt(state.get('page'), 10) || 1) - 1);
    const theme = state.get('theme');
    setTheme(theme === 'dark' || theme === 'light' ? theme : '');
  }

  addChoices(byId('kind'), 'kind');
  addChoices(byId('space'), 'space');
  readState();
  byId('controls').hidden = false;
  show();
  document.documentElement.classList.remove('loading');

  for (const field of fields) {
    field.addEventListener('input', () => {
      page = 0;
      show();
      keepState();
    });
  }
  byId('skip').addEventListener('click', (event) => {
    event.preventDefault();
    list.focus();
  });
  addEventListener('hashchange', () => {
    readState();
    show();
  });
  byId('controls').addEventListener('submit', (event) => event.preventDefault());
  byId('previous').addEventListener('click', () => turn(-1));
  byId('next').addEventListener('click', () => turn(1));
  byId('theme').addEventListener('click', () => {
    setTheme(isDark() ? 'light' : 'dark');
    keepState();
  });
  matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => setTheme(''));
})();
